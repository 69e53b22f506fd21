#include "GroupValidator.h"

#include <algorithm>

namespace commsservice
{

GroupValidator::GroupValidator(std::vector<GroupRule> rules, LiveValues& liveValues, CallLog& callLog)
    : live(liveValues), calls(callLog)
{
  for (GroupRule& rule : rules)
  {
    const std::string name = rule.name;
    groups[name].rule = std::move(rule);
  }
}

void GroupValidator::stage(const Setting& member, const std::string& value)
{
  const auto group = groups.find(member.group);
  if (group == groups.end())
    return;
  std::vector<Pending>& pending = group->second.pending;
  pending.erase(std::remove_if(pending.begin(), pending.end(),
                               [&](const Pending& earlier) { return earlier.member.name == member.name; }),
                pending.end());
  pending.push_back({member, value});
  group->second.accepted = false;
}

void GroupValidator::spoil(const Setting& member)
{
  const auto group = groups.find(member.group);
  if (group != groups.end())
    group->second.spoiledBy = member.rootId;
}

void GroupValidator::forgetAll()
{
  for (auto& [name, group] : groups)
    clearGroup(name);
}

std::vector<std::pair<std::string, std::string>> GroupValidator::getValidGroupItems(const std::string& group)
{
  std::vector<std::pair<std::string, std::string>> items;
  const auto found = groups.find(group);
  if (found == groups.end() || !found->second.accepted)
    return items;
  for (const Pending& pending : found->second.pending)
    items.emplace_back(pending.member.rootId, pending.value);
  return items;
}

void GroupValidator::clearGroup(const std::string& group)
{
  const auto found = groups.find(group);
  if (found == groups.end())
    return;
  found->second.pending.clear();
  found->second.spoiledBy.clear();
  found->second.accepted = false;
}

bool GroupValidator::validateGroup(std::string& reason, const std::string& group)
{
  const auto found = groups.find(group);
  if (found == groups.end())
  {
    reason = "there is no rule for the group " + group;
    calls.judged(group, reason);
    return false;
  }
  const std::string refusal = judge(found->second);
  calls.judged(group, refusal);
  found->second.accepted = refusal.empty();
  if (!found->second.accepted)
  {
    reason = group + ": " + refusal;
    return false;
  }
  for (const Pending& pending : found->second.pending)
    live.set(pending.member.name, "", pending.value);
  return true;
}

void GroupValidator::reloadGroup(const std::string&)
{
}

std::string GroupValidator::judge(const Group& group) const
{
  if (!group.spoiledBy.empty())
    return "nothing of it was changed, because the value of " + group.spoiledBy + " was refused";
  if (group.pending.empty())
    return "";
  return group.rule.judge(
      [&](const std::string& setting)
      {
        const auto own = std::find_if(group.pending.begin(), group.pending.end(),
                                      [&](const Pending& pending) { return pending.member.name == setting; });
        return own != group.pending.end() ? own->value : live.get(setting);
      });
}

} // namespace commsservice
