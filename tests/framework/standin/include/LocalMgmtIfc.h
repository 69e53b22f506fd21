// The local management store.
#pragma once

#include <list>
#include <string>

#include "Executable.h"

class ManageableData;
class MgmtAgentIfc;

class Dictionary
{
public:
  virtual ~Dictionary();
  virtual unsigned size() const;
};

class LocalMgmtIfc : public Dictionary, public Executable
{
public:
  virtual bool registerService(const std::string& serviceName, MgmtAgentIfc* agent, int version) = 0;
  virtual bool lookupData(ManageableData& data) = 0;
  virtual bool subscribe(std::list<std::string>& rootIds, MgmtAgentIfc* agent) = 0;
  virtual bool publishData(ManageableData& data) = 0;
  virtual bool checkData(ManageableData& data, void* context) = 0;
  virtual void flush() = 0;
};
