// What a request comes to in each order of its items.
#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "base/Progress.h"
#include "map/ItemTable.h"

namespace cli::groups
{

struct GroupOfItems
{
  std::string name;
  /// Those in the database, in the order of the map.
  std::vector<const MapItem*> members;
};

/// In the order of the map.
std::vector<GroupOfItems> groupsOf(const ItemTable& items);

/// A value for each member of a group, in the order of the members.
using GroupChange = std::vector<std::string>;

/// Values to try for an item beside its defaults, by root id.
using MoreValues = std::map<std::string, std::vector<std::string>>;

/// The changes that are tried on a group, each once: every choice among the values of its members (default, alternative
/// default, the given ones) when there are at most 16; otherwise the members by their first, second, ... value, and
/// then each member alone by another value than its default, 16 in all. `current` holds the values that the service
/// begins with, which are values to try as well.
std::vector<GroupChange> changesOf(const GroupOfItems& group, const MoreValues& more,
                                   const std::map<std::string, std::string>& current);

/// Places of members, one list an order: all orders of up to five members, otherwise 120 that are the same each time,
/// with the one of the map and its reverse among them.
std::vector<std::vector<std::size_t>> ordersOf(std::size_t members);

/// Everything that a request came to, by what it is about: "result", "group", "NAME refused", "NAME live",
/// "NAME stored", or "crash" alone when the service ended its process or never came back. Unmasked.
using RequestOutcome = std::map<std::string, std::string>;

/// Runs requests of a service, each in a process and on a device of its own that is as the service's first start left
/// it. To be used while this process has one thread.
class PermutationTrial
{
public:
  /// Brings the service up in `scratch`, an empty folder. Paths are absolute. `patience` is for one start with a
  /// request. Throws `StartError`.
  PermutationTrial(const std::filesystem::path& itsService, const std::filesystem::path& itsMap,
                   const std::filesystem::path& itsScratch, std::chrono::seconds itsPatience, Progress& itsProgress);

  /// What the service has of these items after its first start.
  std::map<std::string, std::string> currentValues(const ItemTable& items) const;

  RequestOutcome run(const GroupOfItems& group, const GroupChange& change, const std::vector<std::size_t>& order) const;

private:
  /// Texts by name that come out of a process of its own; with "crash" alone when that ended too early.
  std::map<std::string, std::string> apart(const std::function<std::map<std::string, std::string>()>& work) const;

  std::filesystem::path service;
  std::filesystem::path map;
  std::filesystem::path scratch;
  std::chrono::seconds patience;
  Progress& progress;
};

} // namespace cli::groups
