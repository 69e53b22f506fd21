// Services and callbacks that note what they are asked and answer what they are told.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>

#include <DataAccessServiceIfc.h>
#include <LocalMgmtIfc.h>
#include <MgmtAgentIfc.h>
#include <PhysicalInterfaceServiceIfc.h>
#include <SecurityLogServiceIfc.h>
#include <SvcRTEContext.h>
#include <ValidatorIfc.h>

#include "ServiceDataManagerIfc.h"

namespace recording
{

/// A hook that runs inside a call, after it was noted: to throw, or to call back.
using Hook = std::function<void()>;

class Context : public SvcRTEContext
{
public:
  std::map<std::string, Executable*> services;
  Hook hook;
  Executable* findService(const std::string& interfaceName) override;
};

class Das : public DataAccessServiceIfc
{
public:
  /// Answers for the next requests; when there is none left, `fallback` answers.
  std::deque<std::string> replies;
  std::function<std::string(const std::string& request)> fallback;
  Hook hook;

  Das();
  std::string sendRequest(const char* request, size_t length) override;
};

class Interfaces : public PhysicalInterfaceServiceIfc
{
public:
  uint32_t count = 0;
  Hook hook;
  uint32_t getInterfaceCount() override;
};

class Store : public LocalMgmtIfc
{
public:
  std::map<std::string, std::string> values;
  std::map<std::string, std::map<std::string, std::string>> dictionaries;
  bool registers = true;
  /// A lookup that fails has filled the record all the same: nobody may use what is in it.
  bool looksUp = true;
  bool subscribes = true;
  bool publishes = true;
  /// What checkData leaves in the record.
  std::string objection;
  Hook hook;

  bool registerService(const std::string& serviceName, MgmtAgentIfc* agent, int version) override;
  bool lookupData(ManageableData& data) override;
  bool subscribe(std::list<std::string>& rootIds, MgmtAgentIfc* agent) override;
  bool publishData(ManageableData& data) override;
  bool checkData(ManageableData& data, void* context) override;

private:
  void called(const std::string& call);
};

class SecurityLog : public SecurityLogServiceIfc
{
public:
  Hook hook;
  void logSecurityEvent(time_t when, int facility, int severity, int eventType, int eventClass, bool failed,
                        std::string record, std::string user, std::string origin) override;
  time_t lastTime = 0;
};

class Validator : public ValidatorIfc
{
public:
  struct Group
  {
    bool valid = true;
    std::string reason;
    std::vector<std::pair<std::string, std::string>> items;
  };
  /// How each group is judged; one that is not here is valid and has no items.
  std::map<std::string, Group> groups;
  Hook hook;

  std::vector<std::pair<std::string, std::string>> getValidGroupItems(const std::string& group) override;
  void clearGroup(const std::string& group) override;
  bool validateGroup(std::string& reason, const std::string& group) override;
  void reloadGroup(const std::string& group) override;

private:
  void called(const std::string& call);
};

class Agent : public MgmtAgentIfc
{
public:
  Hook hook;
  void observedDataChanged(ManageableData& data) override;
};

class Setter : public ManagedItemSetter
{
public:
  explicit Setter(std::string callbackName);
  ~Setter() override;
  bool setValue(const std::string& value, const std::string& indexValue, std::string& error) override;

  const std::string name;
  bool accepts = true;
  /// Written into the error text when not empty.
  std::string remark;
  /// The error text as the last call found it.
  std::string errorOnEntry;
  Hook hook;
};

class Getter : public ManagedItemGetter
{
public:
  explicit Getter(std::string callbackName);
  ~Getter() override;
  std::string getValue(const std::string& indexValue) override;

  const std::string name;
  std::string value;
  Hook hook;
};

} // namespace recording
