// Puts item maps to the rules, and mends what can be mended safely.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Finding.h"

namespace cli::check
{

/// What the rules find, in the order of the file. `progress` hears how much is done, from 0 to 1, after each rule.
std::vector<Finding> findingsOf(const MapText& map, const std::vector<const Rule*>& rules,
                                const std::function<void(double)>& progress = nullptr);

/// In the order of the file; those of one place stay as they are.
void sortByPlace(std::vector<Finding>& findings);

/// Something that was mended.
struct Mended
{
  const Rule* rule;
  /// Where it stood, in a file that might have been mended in part already.
  Position position;
  std::string text;
};

struct MendedMap
{
  std::string content;
  /// Empty: the content is the map's own.
  std::vector<Mended> mended;
};

/// Mends until nothing is left that can be mended. All other bytes stay as they are.
MendedMap mend(const MapText& map, const std::vector<const Rule*>& rules);

} // namespace cli::check
