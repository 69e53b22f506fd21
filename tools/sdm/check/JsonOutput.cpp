// Findings for programs, as JSON of our own.
#include <array>

#include <nlohmann/json.hpp>

#include "Result.h"
#include "findings/Formats.h"

namespace cli::check
{
namespace
{

using Json = nlohmann::ordered_json;

Json region(const Positions& positions, const Span& place)
{
  const Position begin = positions.of(place.begin);
  const Position end = positions.of(place.end);
  return {{"startLine", begin.line}, {"startColumn", begin.column}, {"endLine", end.line}, {"endColumn", end.column}};
}

Json mendedOf(const Result& result)
{
  Json all = Json::array();
  for (const Mended& mended : result.mended)
    all.push_back({{"rule", mended.rule->id},
                   {"line", mended.position.line},
                   {"column", mended.position.column},
                   {"text", mended.text}});
  return all;
}

Json findingOf(const Finding& finding, const Positions& positions)
{
  Json made = {{"rule", finding.rule->id}, {"severity", severityName(finding.rule->severity)}};
  made.update(region(positions, finding.place));
  made["text"] = finding.text;
  made["fixable"] = !finding.fix.empty();
  made["related"] = Json::array();
  for (const Related& related : finding.related)
  {
    Json other = region(positions, related.place);
    other["text"] = related.text;
    made["related"].push_back(other);
  }
  return made;
}

Json mapOf(const Result& result)
{
  Json made = {{"path", result.path}, {"failure", result.failure.empty() ? Json() : Json(result.failure)}};
  made["items"] = result.items();
  made["mended"] = mendedOf(result);
  made["findings"] = Json::array();
  if (result.map == nullptr)
    return made;
  const Positions positions(*result.map);
  for (const Finding& finding : result.findings)
    made["findings"].push_back(findingOf(finding, positions));
  return made;
}

} // namespace

void tellJson(std::ostream& out, const std::vector<Result>& results)
{
  Json document = {{"version", 1}, {"errors", 0}, {"warnings", 0}, {"notes", 0}, {"maps", Json::array()}};
  std::array<std::size_t, 3> counts{};
  for (const Result& result : results)
  {
    counts[0] += result.count(Severity::error);
    counts[1] += result.count(Severity::warning);
    counts[2] += result.count(Severity::note);
    document["maps"].push_back(mapOf(result));
  }
  document["errors"] = counts[0];
  document["warnings"] = counts[1];
  document["notes"] = counts[2];
  findings::write(out, document);
}

} // namespace cli::check
