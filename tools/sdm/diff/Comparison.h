// What the comparison of two maps came to, and the forms in which it is told.
#pragma once

#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "Change.h"
#include "base/Style.h"
#include "findings/Report.h"

namespace cli::diff
{

/// A change that somebody has accepted.
struct Acceptance
{
  std::string fingerprint;
  std::string rule;
  std::string text;
  /// Empty as long as nobody has filled it in.
  std::string reason;
};

/// A change, and what names it in files.
struct NamedChange
{
  Change change;
  std::string fingerprint;
  /// The reason of who accepted it; nothing when nobody has.
  std::optional<std::string> accepted;
};

struct Comparison
{
  std::string oldPath;
  std::string newPath;
  /// Null when the maps could not be compared.
  std::unique_ptr<MapText> oldMap;
  std::unique_ptr<MapText> newMap;
  std::vector<NamedChange> changes;
  /// What is accepted and not changed any more.
  std::vector<Acceptance> stale;
  /// Why the maps could not be compared; empty when they were.
  std::string failure;

  /// Of the changes that nobody has accepted.
  std::size_t count(Severity severity) const;
  std::size_t accepted() const;
};

/// The rules, as they are listed and explained.
const std::vector<findings::RuleText>& ruleTexts();

/// For people: a line a change, and below it what becomes of devices.
void tellText(std::ostream& out, const Comparison& comparison, const Style& style);

/// A document of JSON, with the accepted changes marked.
void tellJson(std::ostream& out, const Comparison& comparison);

/// What all other formats are made of; without the accepted changes.
findings::Report reportOf(const Comparison& comparison, findings::FailOn failOn);

} // namespace cli::diff
