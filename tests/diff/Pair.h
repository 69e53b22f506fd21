// Two maps, and what is told of them.
#pragma once

#include <string>
#include <vector>

namespace difftest
{

struct MapPair
{
  /// What the pair shows, in words joined by underscores.
  const char* name;
  std::string oldMap;
  std::string newMap;
  /// The ids of the rules, in the order of the alphabet, a blank between them. The mirrors are told the other way
  /// round.
  const char* rules;
};

std::vector<MapPair> itemPairs();
std::vector<MapPair> cellPairs();
std::vector<MapPair> valuePairs();
std::vector<MapPair> linePairs();
/// Maps that are written otherwise and mean the same.
std::vector<MapPair> silentPairs();

/// An item that is the same in both maps.
inline const std::string other = "ok.item,Sound,Value,,,1,setOk,getOk,,,,\n";

} // namespace difftest
