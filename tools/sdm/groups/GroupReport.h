// What became of the changes of a group, and how it is told.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <vector>

#include "Permutation.h"
#include "base/Progress.h"
#include "base/Style.h"
#include "map/Masking.h"

namespace cli::groups
{

/// Orders that come to the same.
struct Alike
{
  RequestOutcome outcome;
  std::vector<std::size_t> firstOrder;
  std::size_t orders = 0;
};

/// A change, and what its orders come to.
struct TriedChange
{
  GroupChange change;
  std::vector<Alike> outcomes;
};

struct GroupReport
{
  const GroupOfItems* group;
  std::size_t changes = 0;
  std::size_t orders = 0;
  /// The order matters to these.
  std::vector<TriedChange> differences;
  /// These end the service in at least one order; of one outcome when they do in each.
  std::vector<TriedChange> crashes;

  bool isGood() const
  {
    return differences.empty() && crashes.empty();
  }
};

/// Tries each change in every order of the group's items.
GroupReport tryGroup(const PermutationTrial& trial, const GroupOfItems& group, const std::vector<GroupChange>& changes,
                     Progress& progress);

/// For people, on standard output.
void printReport(const GroupReport& report, const Masking& masking, const Style& style);

/// For programs.
nlohmann::ordered_json jsonOf(const GroupReport& report, const Masking& masking);

/// The members at these places.
std::vector<std::string> namesIn(const GroupOfItems& group, const std::vector<std::size_t>& order);

} // namespace cli::groups
