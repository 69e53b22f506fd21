// Findings in the form that all formats are made of, but for our own text and JSON.
#include <algorithm>

#include "Result.h"

namespace cli::check
{
namespace
{

using findings::Json;

findings::RuleText textOf(const Rule& rule)
{
  return {rule.id,
          rule.severity,
          rule.summary,
          rule.explanation,
          rule.fixable ? ", can be mended by --fix" : "",
          {{"id", rule.id},
           {"severity", severityName(rule.severity)},
           {"fixable", rule.fixable},
           {"summary", rule.summary},
           {"explanation", rule.explanation}}};
}

findings::Place placeOf(const Result& result, const Positions& positions, const Span& place)
{
  return {result.path, positions.of(place.begin), positions.of(place.end)};
}

Json regionOf(const findings::Place& place)
{
  return {{"startLine", place.begin.line},
          {"startColumn", place.begin.column},
          {"endLine", place.end.line},
          {"endColumn", place.end.column}};
}

Json fixesOf(const Result& result, const Finding& finding, const Positions& positions)
{
  if (finding.fix.empty())
    return {};
  Json replacements = Json::array();
  for (const Edit& edit : finding.fix)
    replacements.push_back({{"deletedRegion", regionOf(placeOf(result, positions, edit.place))},
                            {"insertedContent", {{"text", edit.replacement}}}});
  const Json change = {{"artifactLocation", {{"uri", findings::uriOf(result.path)}}}, {"replacements", replacements}};
  return Json::array({{{"description", {{"text", "What --fix does"}}}, {"artifactChanges", Json::array({change})}}});
}

/// The root id of the item that a byte belongs to; empty where there is none. A line number would change with each line
/// that somebody puts before it.
std::string rootIdAt(const MapText& map, std::uint32_t byte)
{
  const auto& lines = map.lines();
  const auto behind = std::upper_bound(lines.begin(), lines.end(), byte,
                                       [](std::uint32_t at, const MapLine& line) { return at < line.place.begin; });
  if (behind == lines.begin() || (behind - 1)->kind != MapLine::Kind::item)
    return "";
  return std::string(map.text(*(behind - 1), Column::rootId));
}

findings::Finding sharedOf(const Result& result, const Finding& finding, const Positions& positions, std::size_t rule)
{
  findings::Finding made;
  made.rule = rule;
  made.text = finding.text;
  made.place = placeOf(result, positions, finding.place);
  for (const Related& related : finding.related)
    made.related.push_back({placeOf(result, positions, related.place), related.text});
  made.fingerprint =
      findings::fingerprintOf({finding.rule->id, result.path, rootIdAt(*result.map, finding.place.begin)});
  made.fixes = fixesOf(result, finding, positions);
  return made;
}

} // namespace

std::vector<findings::RuleText> textsOf(const std::vector<const Rule*>& rules)
{
  std::vector<findings::RuleText> texts;
  texts.reserve(rules.size());
  for (const Rule* rule : rules)
    texts.push_back(textOf(*rule));
  return texts;
}

findings::Report reportOf(const std::vector<Result>& results, const std::vector<const Rule*>& rules,
                          findings::FailOn failOn)
{
  findings::Report report;
  report.tool = "sdm check";
  report.failOn = failOn;
  report.rules = textsOf(rules);
  for (const Result& result : results)
  {
    report.paths.push_back(result.path);
    if (!result.failure.empty())
      report.failures.push_back({result.path, result.failure});
    if (result.map == nullptr)
      continue;
    const Positions positions(*result.map);
    for (const Finding& finding : result.findings)
    {
      const auto rule = static_cast<std::size_t>(std::find(rules.begin(), rules.end(), finding.rule) - rules.begin());
      report.findings.push_back(sharedOf(result, finding, positions, rule));
    }
  }
  findings::keepApart(report.findings, [](findings::Finding& finding) -> std::string& { return finding.fingerprint; });
  return report;
}

} // namespace cli::check
