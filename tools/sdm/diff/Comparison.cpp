// A comparison of two maps, written in each of the formats.
#include "Comparison.h"

#include <algorithm>

#include "base/Shown.h"
#include "findings/Formats.h"

namespace cli::diff
{
namespace
{

using findings::Json;

constexpr const char* storedTitle = "stored value";
constexpr const char* notStoredTitle = "no stored value";

findings::RuleText textOf(const Rule& rule)
{
  const bool own = std::string(rule.mirror) == rule.id;
  return {rule.id,
          rule.severity,
          rule.summary,
          std::string(rule.explanation) + " With a stored value: " + rule.stored + ". Without one: " + rule.notStored +
              ".",
          own ? ", its own mirror" : std::string(", mirrored by ") + rule.mirror,
          {{"id", rule.id},
           {"severity", severityName(rule.severity)},
           {"mirror", rule.mirror},
           {"summary", rule.summary},
           {"stored", rule.stored},
           {"notStored", rule.notStored},
           {"explanation", rule.explanation}}};
}

findings::Place placeOf(const std::string& path, const Positions& positions, const Span& place)
{
  return {path, positions.of(place.begin), positions.of(place.end)};
}

/// Reviews show places of the new map alone; what is gone from it is told at its beginning.
findings::Finding sharedOf(const Comparison& comparison, const NamedChange& named, const Positions& oldPositions,
                           const Positions& newPositions)
{
  const Change& change = named.change;
  findings::Finding made;
  made.rule = static_cast<std::size_t>(change.rule - allRules().data());
  made.text = change.text;
  made.fingerprint = named.fingerprint;
  made.place = change.newPlace ? placeOf(comparison.newPath, newPositions, *change.newPlace)
                               : findings::Place{comparison.newPath, {}, {}};
  if (change.oldPlace)
    made.related.push_back({placeOf(comparison.oldPath, oldPositions, *change.oldPlace), "in the old map"});
  made.effects = {{storedTitle, change.stored}, {notStoredTitle, change.notStored}};
  return made;
}

void tellChange(std::ostream& out, const Comparison& comparison, const Change& change, const Positions& oldPositions,
                const Positions& newPositions, const Style& style)
{
  const auto place = [](const std::string& path, const Position& position)
  { return shown(path) + ":" + std::to_string(position.line) + ":" + std::to_string(position.column); };
  const std::string before = change.oldPlace ? place(comparison.oldPath, oldPositions.of(change.oldPlace->begin)) : "";
  const std::string after = change.newPlace ? place(comparison.newPath, newPositions.of(change.newPlace->begin)) : "";
  out << style.strong((after.empty() ? before : after) + ":") << " "
      << coloured(style, change.rule->severity, std::string(severityName(change.rule->severity)) + ":") << " "
      << change.text << (after.empty() || before.empty() ? "" : style.faint(" (before: " + before + ")")) << " "
      << style.faint("[" + std::string(change.rule->id) + "]") << "\n"
      << "  " << storedTitle << ": " << change.stored << "\n"
      << "  " << notStoredTitle << ": " << change.notStored << "\n";
}

Json positionOf(const Positions& positions, const std::optional<Span>& place)
{
  if (!place)
    return {};
  const Position position = positions.of(place->begin);
  return {{"line", position.line}, {"column", position.column}};
}

Json jsonOf(const NamedChange& named, const Positions& oldPositions, const Positions& newPositions)
{
  const Change& change = named.change;
  return {{"rule", change.rule->id},
          {"severity", severityName(change.rule->severity)},
          {"subject", change.subject},
          {"text", change.text},
          {"old", positionOf(oldPositions, change.oldPlace)},
          {"new", positionOf(newPositions, change.newPlace)},
          {"before", change.before},
          {"after", change.after},
          {"secret", change.secret},
          {"stored", change.stored},
          {"notStored", change.notStored},
          {"fingerprint", named.fingerprint},
          {"accepted", named.accepted ? Json(*named.accepted) : Json()}};
}

} // namespace

std::size_t Comparison::count(Severity severity) const
{
  return static_cast<std::size_t>(std::count_if(changes.begin(), changes.end(),
                                                [&](const NamedChange& each)
                                                { return !each.accepted && each.change.rule->severity == severity; }));
}

std::size_t Comparison::accepted() const
{
  return static_cast<std::size_t>(
      std::count_if(changes.begin(), changes.end(), [](const NamedChange& each) { return each.accepted.has_value(); }));
}

const std::vector<findings::RuleText>& ruleTexts()
{
  static const std::vector<findings::RuleText> texts = []
  {
    std::vector<findings::RuleText> made;
    for (const Rule& rule : allRules())
      made.push_back(textOf(rule));
    return made;
  }();
  return texts;
}

void tellText(std::ostream& out, const Comparison& comparison, const Style& style)
{
  if (comparison.newMap == nullptr)
    return;
  const Positions oldPositions(*comparison.oldMap);
  const Positions newPositions(*comparison.newMap);
  for (const NamedChange& each : comparison.changes)
  {
    if (!each.accepted)
      tellChange(out, comparison, each.change, oldPositions, newPositions, style);
  }
}

void tellJson(std::ostream& out, const Comparison& comparison)
{
  Json document = {{"version", 1},
                   {"old", comparison.oldPath},
                   {"new", comparison.newPath},
                   {"failure", comparison.failure.empty() ? Json() : Json(comparison.failure)},
                   {"errors", comparison.count(Severity::error)},
                   {"warnings", comparison.count(Severity::warning)},
                   {"notes", comparison.count(Severity::note)},
                   {"accepted", comparison.accepted()},
                   {"changes", Json::array()},
                   {"stale", Json::array()}};
  if (comparison.newMap != nullptr)
  {
    const Positions oldPositions(*comparison.oldMap);
    const Positions newPositions(*comparison.newMap);
    for (const NamedChange& each : comparison.changes)
      document["changes"].push_back(jsonOf(each, oldPositions, newPositions));
  }
  for (const Acceptance& entry : comparison.stale)
    document["stale"].push_back(
        {{"fingerprint", entry.fingerprint}, {"rule", entry.rule}, {"text", entry.text}, {"reason", entry.reason}});
  findings::write(out, document);
}

findings::Report reportOf(const Comparison& comparison, findings::FailOn failOn)
{
  findings::Report report;
  report.tool = "sdm diff";
  report.failOn = failOn;
  report.rules = ruleTexts();
  report.paths = {comparison.newPath};
  if (!comparison.failure.empty())
    report.failures.push_back({comparison.newPath, comparison.failure});
  if (comparison.newMap == nullptr)
    return report;
  const Positions oldPositions(*comparison.oldMap);
  const Positions newPositions(*comparison.newMap);
  for (const NamedChange& each : comparison.changes)
  {
    if (!each.accepted)
      report.findings.push_back(sharedOf(comparison, each, oldPositions, newPositions));
  }
  return report;
}

} // namespace cli::diff
