// Keeps the pending values of each group until they are judged together; only then do they become live.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include <ValidatorIfc.h>

#include "CallLog.h"
#include "GroupRules.h"
#include "LiveValues.h"

namespace commsservice
{

/// All or nothing: a group that is refused, or had a member refused, keeps its live values.
///
/// What is pending counts for one operation. The manager clears the groups that it judged, yet neither judges
/// nor clears a group whose last member was refused; so whoever starts an operation calls `forgetAll` first.
/// Like the callbacks that feed it, it is used on the manager's thread with the manager's lock held.
class GroupValidator : public ValidatorIfc
{
public:
  /// Borrows the values and the log.
  GroupValidator(std::vector<GroupRule> rules, LiveValues& liveValues, CallLog& callLog);

  /// Holds a value of a member until the verdict; of a repeated member the last value.
  void stage(const Setting& member, const std::string& value);

  /// A member's value was refused, so the rest of the group must not become live without it.
  void spoil(const Setting& member);

  void forgetAll();

  /// The values that were accepted, in the order in which they came.
  std::vector<std::pair<std::string, std::string>> getValidGroupItems(const std::string& group) override;
  void clearGroup(const std::string& group) override;

  /// Judges the pending values together with the live ones of the other members, and makes them live when
  /// they agree. A group with nothing pending is fine as it is.
  bool validateGroup(std::string& reason, const std::string& group) override;

  /// What was just read from the database is pending already, handed over by the setters.
  void reloadGroup(const std::string& group) override;

private:
  struct Pending
  {
    Setting member;
    std::string value;
  };

  struct Group
  {
    GroupRule rule;
    std::vector<Pending> pending;
    std::string spoiledBy;
    bool accepted = false;
  };

  std::string judge(const Group& group) const;

  std::map<std::string, Group> groups;
  LiveValues& live;
  CallLog& calls;
};

} // namespace commsservice
