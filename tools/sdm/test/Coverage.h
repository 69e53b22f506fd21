// What of a service no test reached.
#pragma once

#include <cstddef>
#include <filesystem>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "transcript/Transcript.h"

namespace cli::test
{

/// One kind of things, and those among them that never ran.
struct CoverageOf
{
  /// "setters" and so on.
  const char* kind;
  std::size_t all = 0;
  std::vector<std::string> missing;
};

using CoverageReport = std::vector<CoverageOf>;

/// Adds up transcripts. A start calls the setters of all items, whatever is tested, so what happens in one counts for
/// nothing.
class Coverage
{
public:
  /// `map` is the item map that the transcript was made with; nothing is noted when it cannot be read any more.
  void note(const transcript::Transcript& transcript, const std::filesystem::path& map);

  /// Setters and getters that the service registered; groups and items of the maps.
  CoverageReport report() const;

private:
  /// A callback and a row.
  using Place = std::pair<std::string, std::string>;

  void noteEvent(const transcript::Event& event);
  void noteItems(const nlohmann::ordered_json& content);

  struct Item
  {
    std::string rootId;
    Place setter;
    Place getter;
    bool operator<(const Item& other) const
    {
      return rootId < other.rootId;
    }
  };

  std::set<std::string> setters;
  std::set<std::string> getters;
  std::set<std::string> groups;
  std::set<Item> items;
  std::set<Place> settersRun;
  std::set<Place> gettersRun;
  std::set<std::string> groupsRun;
  std::set<std::string> itemsRun;
};

} // namespace cli::test
