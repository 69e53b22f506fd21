// Findings for programs: JSON of our own, and SARIF for those that collect findings of many tools.
#include <array>
#include <cctype>
#include <cstdio>

#include <nlohmann/json.hpp>

#include "Result.h"
#include "base/Shown.h"

namespace cli::check
{
namespace
{

using Json = nlohmann::ordered_json;

/// What is no UTF-8 is replaced, so that the document stays one.
void write(std::ostream& out, const Json& document)
{
  out << shownJson(document.dump(2, ' ', false, Json::error_handler_t::replace)) << "\n";
}

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

/// A path as a reference of a URI: what has a meaning there is written in hexadecimal digits.
std::string uriOf(const std::string& path)
{
  std::string uri = path.empty() || path.front() != '/' ? "" : "file://";
  for (const char c : path)
  {
    const bool plain = std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '/' || c == '.' || c == '_' || c == '-';
    std::array<char, 4> code{};
    std::snprintf(code.data(), code.size(), "%%%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
    uri += plain ? std::string(1, c) : std::string(code.data());
  }
  return uri;
}

Json locationOf(const Result& result, const Positions& positions, const Span& place)
{
  return {{"physicalLocation",
           {{"artifactLocation", {{"uri", uriOf(result.path)}}}, {"region", region(positions, place)}}}};
}

const char* levelOf(Severity severity)
{
  return severityName(severity);
}

Json ruleOf(const Rule& rule)
{
  return {{"id", rule.id},
          {"shortDescription", {{"text", rule.summary}}},
          {"fullDescription", {{"text", rule.explanation}}},
          {"help", {{"text", rule.explanation}}},
          {"defaultConfiguration", {{"level", levelOf(rule.severity)}}}};
}

Json fixOf(const Result& result, const Finding& finding, const Positions& positions)
{
  Json replacements = Json::array();
  for (const Edit& edit : finding.fix)
    replacements.push_back(
        {{"deletedRegion", region(positions, edit.place)}, {"insertedContent", {{"text", edit.replacement}}}});
  const Json change = {{"artifactLocation", {{"uri", uriOf(result.path)}}}, {"replacements", replacements}};
  return {{"description", {{"text", "What --fix does"}}}, {"artifactChanges", Json::array({change})}};
}

Json resultOf(const Result& result, const Finding& finding, const Positions& positions, std::size_t ruleIndex)
{
  Json made = {{"ruleId", finding.rule->id},
               {"ruleIndex", ruleIndex},
               {"level", levelOf(finding.rule->severity)},
               {"message", {{"text", finding.text}}},
               {"locations", Json::array({locationOf(result, positions, finding.place)})}};
  for (const Related& related : finding.related)
  {
    Json other = locationOf(result, positions, related.place);
    other["id"] = made.contains("relatedLocations") ? made["relatedLocations"].size() : 0;
    other["message"] = {{"text", related.text}};
    made["relatedLocations"].push_back(other);
  }
  if (!finding.fix.empty())
    made["fixes"] = Json::array({fixOf(result, finding, positions)});
  return made;
}

Json invocationOf(const std::vector<Result>& results)
{
  Json notifications = Json::array();
  for (const Result& result : results)
  {
    if (!result.failure.empty())
      notifications.push_back({{"level", "error"}, {"message", {{"text", result.failure}}}});
  }
  return {{"executionSuccessful", notifications.empty()}, {"toolExecutionNotifications", notifications}};
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
  write(out, document);
}

void tellSarif(std::ostream& out, const std::vector<Result>& results, const std::vector<const Rule*>& rules)
{
  Json told = Json::array();
  std::map<const Rule*, std::size_t> indexes;
  for (const Rule* rule : rules)
  {
    indexes[rule] = told.size();
    told.push_back(ruleOf(*rule));
  }
  Json found = Json::array();
  for (const Result& result : results)
  {
    if (result.map == nullptr)
      continue;
    const Positions positions(*result.map);
    for (const Finding& finding : result.findings)
      found.push_back(resultOf(result, finding, positions, indexes[finding.rule]));
  }
  const Json driver = {{"name", "sdm check"}, {"version", SDM_VERSION}, {"rules", told}};
  const Json run = {{"tool", {{"driver", driver}}},
                    {"invocations", Json::array({invocationOf(results)})},
                    {"columnKind", "unicodeCodePoints"},
                    {"results", found}};
  write(out, {{"$schema", "https://docs.oasis-open.org/sarif/sarif/v2.1.0/os/schemas/sarif-schema-2.1.0.json"},
              {"version", "2.1.0"},
              {"runs", Json::array({run})}});
}

} // namespace cli::check
