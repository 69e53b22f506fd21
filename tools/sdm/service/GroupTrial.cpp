// The validator gets all members of a group, gives its verdict, and has to list exactly these members.
#include "GroupTrial.h"

#include <algorithm>
#include <set>
#include <utility>

#include "base/Shown.h"

namespace cli
{

GroupTrial::GroupTrial(RunningService& itsService, const ItemTrial& itsItems, const TrialReport& itsReport)
    : service(itsService), items(itsItems), report(itsReport)
{
}

void GroupTrial::run(const std::string& group, const Members& members, DefaultKind kind) const
{
  const auto hasAlternative = [](const MapItem* item) { return item->hasAlternative(); };
  if (kind == DefaultKind::alternative && std::none_of(members.begin(), members.end(), hasAlternative))
    return;
  const std::string& first = members.front()->rootId;
  if (service.validator() == nullptr)
  {
    if (kind == DefaultKind::usual)
      report.find(first, "no-validator", "its group " + shown(group) + " fails always: the service has no validator");
    return;
  }
  const auto clear = [&] { service.validator()->clearGroup(group); };
  report.guarded(first, "the validator", "validator-throws", clear);
  tryMembers(group, members, kind);
  report.guarded(first, "the validator", "validator-throws", clear);
}

void GroupTrial::tryMembers(const std::string& group, const Members& members, DefaultKind kind) const
{
  bool complete = true;
  for (const MapItem* member : members)
    complete = items.set(*member, kind) && complete;
  // With a member missing the verdict would be about something else.
  if (!complete || !judge(group, *members.front(), kind))
    return;
  for (const MapItem* member : members)
    items.compare(*member, kind);
  compareValidItems(group, members);
}

bool GroupTrial::judge(const std::string& group, const MapItem& first, DefaultKind kind) const
{
  report.step("when the validator was asked about the group " + shown(group));
  bool accepted = false;
  std::string reason;
  if (!report.guarded(first.rootId, "the validator", "validator-throws",
                      [&] { accepted = service.validator()->validateGroup(reason, group); }))
    return false;
  const bool alternative = kind == DefaultKind::alternative;
  if (!accepted)
    report.find(first.rootId, alternative ? "group-alternative-refused" : "group-default-refused",
                "the validator refuses the " + std::string(alternative ? "alternative defaults" : "defaults") +
                    " of its group " + shown(group) + because(reason));
  return accepted;
}

void GroupTrial::compareValidItems(const std::string& group, const Members& members) const
{
  std::vector<std::pair<std::string, std::string>> listed;
  const std::string first = members.front()->rootId;
  if (!report.guarded(first, "the validator", "validator-throws",
                      [&] { listed = service.validator()->getValidGroupItems(group); }))
    return;
  const auto isMember = [&](const std::string& rootId)
  { return std::any_of(members.begin(), members.end(), [&](const MapItem* each) { return each->rootId == rootId; }); };
  std::set<std::string> names;
  for (const auto& [rootId, value] : listed)
  {
    names.insert(rootId);
    if (!isMember(rootId))
      report.find(first, "group-item-unknown",
                  "the validator lists " + shownValue(rootId) + ", which is no item of the group " + shown(group));
  }
  for (const MapItem* member : members)
  {
    if (names.count(member->rootId) == 0 && service.manager().hasSetter(member->setter))
      report.find(member->rootId, "group-item-missing",
                  "the validator accepts the group " + shown(group) +
                      " and does not list this item, so it would not be written");
  }
}

} // namespace cli
