// Which changes of a group are tried, and in which orders.
#include <algorithm>
#include <numeric>
#include <random>

#include "Permutation.h"

namespace cli::groups
{
namespace
{

constexpr std::size_t mostChanges = 16;
constexpr std::size_t mostOrders = 120;
constexpr std::size_t mostMembersInAllOrders = 5;

template <typename Item>
void addOnce(std::vector<Item>& list, const Item& item)
{
  if (std::find(list.begin(), list.end(), item) == list.end())
    list.push_back(item);
}

/// The default first.
std::vector<std::string> valuesOf(const MapItem& item, const MoreValues& more,
                                  const std::map<std::string, std::string>& current)
{
  std::vector<std::string> values = {item.defaultValue};
  if (const auto given = more.find(item.rootId); given != more.end())
  {
    for (const std::string& value : given->second)
      addOnce(values, value);
  }
  if (item.hasAlternative())
    addOnce(values, item.alternativeDefault);
  if (const auto now = current.find(item.rootId); now != current.end())
    addOnce(values, now->second);
  return values;
}

using Choices = std::vector<std::vector<std::string>>;

std::vector<GroupChange> everyChoice(const Choices& choices)
{
  std::vector<GroupChange> changes = {{}};
  for (const auto& values : choices)
  {
    std::vector<GroupChange> longer;
    for (const GroupChange& begun : changes)
    {
      for (const std::string& value : values)
      {
        longer.push_back(begun);
        longer.back().push_back(value);
      }
    }
    changes = std::move(longer);
  }
  return changes;
}

std::vector<GroupChange> someChoices(const Choices& choices)
{
  std::size_t longest = 0;
  GroupChange defaults;
  for (const auto& values : choices)
  {
    longest = std::max(longest, values.size());
    defaults.push_back(values.front());
  }
  std::vector<GroupChange> changes;
  for (std::size_t i = 0; i < longest; ++i)
  {
    GroupChange change;
    for (const auto& values : choices)
      change.push_back(values[std::min(i, values.size() - 1)]);
    addOnce(changes, change);
  }
  for (std::size_t member = 0; member < choices.size(); ++member)
  {
    GroupChange change = defaults;
    change[member] = choices[member].back();
    addOnce(changes, change);
  }
  changes.resize(std::min(changes.size(), mostChanges));
  return changes;
}

} // namespace

std::vector<GroupOfItems> groupsOf(const ItemTable& items)
{
  std::vector<GroupOfItems> groups;
  for (const std::string& rootId : items.rootIds())
  {
    const MapItem* item = items.find(rootId);
    if (item->group.empty() || item->isLocal())
      continue;
    auto group =
        std::find_if(groups.begin(), groups.end(), [&](const GroupOfItems& each) { return each.name == item->group; });
    if (group == groups.end())
      group = groups.insert(groups.end(), {item->group, {}});
    group->members.push_back(item);
  }
  return groups;
}

std::vector<GroupChange> changesOf(const GroupOfItems& group, const MoreValues& more,
                                   const std::map<std::string, std::string>& current)
{
  Choices choices;
  std::size_t all = 1;
  for (const MapItem* member : group.members)
  {
    choices.push_back(valuesOf(*member, more, current));
    all = std::min(all * choices.back().size(), mostChanges + 1);
  }
  return all <= mostChanges ? everyChoice(choices) : someChoices(choices);
}

std::vector<std::vector<std::size_t>> ordersOf(std::size_t members)
{
  std::vector<std::size_t> order(members);
  std::iota(order.begin(), order.end(), 0U);
  std::vector<std::vector<std::size_t>> orders;
  if (members <= mostMembersInAllOrders)
  {
    do
      orders.push_back(order);
    while (std::next_permutation(order.begin(), order.end()));
    return orders;
  }
  orders.push_back(order);
  orders.emplace_back(order.rbegin(), order.rend());
  // The same numbers on every machine, so that a finding can be looked at again.
  std::mt19937 numbers(20); // NOLINT(cert-msc32-c,cert-msc51-cpp)
  while (orders.size() < mostOrders)
  {
    for (std::size_t left = members; left > 1; --left)
      std::swap(order[left - 1], order[numbers() % left]);
    addOnce(orders, order);
  }
  return orders;
}

} // namespace cli::groups
