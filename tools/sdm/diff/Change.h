// What differs between two item maps.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Rules.h"
#include "map/MapText.h"

namespace cli::diff
{

/// One change. Its texts hide the values of secrets; those without a full stop or quotes are one sentence.
struct Change
{
  const Rule* rule = nullptr;
  /// The root id, the schema or the cell that it is about, as it stands in the map.
  std::string subject;
  /// Safe to show on a terminal.
  std::string text;
  /// What the maps say, as it stands there; for a secret, marks that say nothing about it.
  std::string before;
  std::string after;
  bool secret = false;
  /// Where it stands in the old map and in the new one. Nothing: it stands in the other alone.
  std::optional<Span> oldPlace;
  std::optional<Span> newPlace;
  /// What becomes of a device with a stored value, and of one without.
  std::string stored;
  std::string notStored;
};

/// What stands for the value of a secret.
constexpr const char* secretBefore = "***** (before)";
constexpr const char* secretAfter = "***** (after)";

/// All changes, in the order of the new map; what stands in the old one alone comes where it would have stood by its
/// line. Empty when both maps mean the same.
std::vector<Change> changesOf(const MapText& oldMap, const MapText& newMap);

/// Names a change whatever its lines are: the same for two runs on maps whose lines moved, another one when rule,
/// subject or a value differs. A value of a secret has no part in it.
std::string fingerprint(const Change& change);

} // namespace cli::diff
