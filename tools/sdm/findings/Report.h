// What a subcommand found, in the form that all formats are made of.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "Severity.h"
#include "map/MapText.h"

namespace cli::findings
{

using Json = nlohmann::ordered_json;

/// A rule, as it is listed and explained.
struct RuleText
{
  std::string id;
  Severity severity = Severity::note;
  /// One sentence.
  std::string summary;
  std::string explanation;
  /// What else is known of it, for the line behind its name; empty: nothing.
  std::string remark;
  /// The rule as `--rules --json` has it.
  Json json;
};

/// A piece of a file. Texts name the file as they got it.
struct Place
{
  std::string path;
  Position begin;
  Position end;
};

struct Related
{
  Place place;
  std::string text;
};

// NOLINTNEXTLINE(bugprone-exception-escape): moving JSON is declared not to throw, but checks itself on the way.
struct Finding
{
  /// The place of its rule in `Report::rules`.
  std::size_t rule = 0;
  /// One sentence without a full stop, safe to show on a terminal, without secrets.
  std::string text;
  Place place;
  std::vector<Related> related;
  /// What follows from it: a title and a sentence without a full stop each.
  std::vector<std::pair<std::string, std::string>> effects;
  /// The same in a later run, though lines moved; no two of a report have the same.
  std::string fingerprint;
  /// What SARIF has for mending it; null for nothing.
  Json fixes;
};

/// A file that could not be dealt with.
struct Failure
{
  std::string path;
  std::string text;
};

/// From which severity on a finding counts as a failure.
enum class FailOn
{
  error,
  warning,
  note,
  never
};

/// Whether a finding of that severity is a failure.
bool counts(FailOn failOn, Severity severity);

struct Report
{
  /// "sdm check".
  std::string tool;
  FailOn failOn = FailOn::error;
  std::vector<RuleText> rules;
  std::vector<Finding> findings;
  std::vector<Failure> failures;
  /// The files that were looked at.
  std::vector<std::string> paths;

  Severity severityOf(const Finding& finding) const
  {
    return rules[finding.rule].severity;
  }
  std::size_t count(Severity severity) const;
  bool hasFailing() const;
};

/// A text of 32 hexadecimal digits that stands for these parts, in their order.
std::string fingerprintOf(const std::vector<std::string>& parts);

/// Makes fingerprints that several of them share differ: the second one ends in "-2" and so on. `fingerprint` answers a
/// reference to that of one.
template <typename Named, typename Fingerprint>
void keepApart(std::vector<Named>& all, Fingerprint fingerprint)
{
  std::map<std::string, std::size_t> seen;
  for (Named& each : all)
  {
    std::string& name = fingerprint(each);
    const std::size_t before = seen[name]++;
    if (before > 0)
      name += "-" + std::to_string(before + 1);
  }
}

/// The effects of a finding, "TITLE: TEXT" each, with `before` and `after` around each.
std::string effectsText(const Finding& finding, const std::string& before, const std::string& after);

/// A path as a reference of a URI: what has a meaning there is written in hexadecimal digits.
std::string uriOf(const std::string& path);

/// "1 error, 2 warnings, 0 notes".
std::string countsText(const Report& report);

} // namespace cli::findings
