// The framework's record: no indirection, its members are part of its layout.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

class LocalMgmtIfc;

class ManageableData
{
public:
  ManageableData() : sequence(1)
  {
  }
  virtual ~ManageableData()
  {
  }

  void setRootId(const std::string& rootId, LocalMgmtIfc*)
  {
    own = rootId;
  }
  std::string getRootId() const
  {
    return own;
  }
  void addRootId(const std::string& rootId, LocalMgmtIfc* store);
  void getRootIds(std::vector<std::string>& rootIds);
  bool interogate(const std::string& rootId, const std::string& name, std::string& value);
  void populate(const std::string& rootId, const std::string& name, const std::string& value);
  void addRejectReason(std::string rootId, std::string name, std::string reason);
  bool isRejectListEmpty()
  {
    return refusals.empty();
  }
  bool areAllRejectReasons(const std::string& reason);
  unsigned sequenceNumber() const
  {
    return sequence;
  }

private:
  unsigned sequence;
  std::map<std::pair<std::string, std::string>, std::string> values;
  std::vector<std::string> listed;
  std::vector<std::string> refusals;
  std::string own;
};
