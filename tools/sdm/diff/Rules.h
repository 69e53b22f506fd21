// The classes of change between two item maps.
#pragma once

#include <string>
#include <vector>

#include "findings/Severity.h"

namespace cli::diff
{

struct Rule
{
  /// Lower-case words joined by hyphens; never changes once it was published.
  const char* id;
  Severity severity;
  /// The rule that the same two maps break the other way round; its own id for one that is its own mirror.
  const char* mirror;
  /// One sentence: what changed.
  const char* summary;
  /// What becomes of a device that has a stored value, and of one that has none. One sentence each, without a full
  /// stop.
  const char* stored;
  const char* notStored;
  /// What is behind it, and what to do about it.
  const char* explanation;
};

/// In the order in which they are told.
const std::vector<Rule>& allRules();

/// Null when there is none.
const Rule* findRule(const std::string& id);

} // namespace cli::diff
