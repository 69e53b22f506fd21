// The management agent.
#pragma once

class ManageableData;

class MgmtAgentIfc
{
public:
  virtual ~MgmtAgentIfc()
  {
  }
  virtual void observedDataChanged(ManageableData& data) = 0;
};
