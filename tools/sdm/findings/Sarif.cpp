// Findings as SARIF 2.1.0, for tools that collect those of many.
#include "Formats.h"

namespace cli::findings
{
namespace
{

Json locationOf(const Place& place)
{
  return {{"physicalLocation",
           {{"artifactLocation", {{"uri", uriOf(place.path)}}},
            {"region",
             {{"startLine", place.begin.line},
              {"startColumn", place.begin.column},
              {"endLine", place.end.line},
              {"endColumn", place.end.column}}}}}};
}

Json ruleOf(const RuleText& rule)
{
  return {{"id", rule.id},
          {"shortDescription", {{"text", rule.summary}}},
          {"fullDescription", {{"text", rule.explanation}}},
          {"help", {{"text", rule.explanation}}},
          {"defaultConfiguration", {{"level", severityName(rule.severity)}}}};
}

Json resultOf(const Report& report, const Finding& finding)
{
  const std::string text = finding.text + effectsText(finding, "\n", "");
  Json made = {{"ruleId", report.rules[finding.rule].id},
               {"ruleIndex", finding.rule},
               {"level", severityName(report.severityOf(finding))},
               {"message", {{"text", text}}},
               {"locations", Json::array({locationOf(finding.place)})},
               {"partialFingerprints", {{"sdm/v1", finding.fingerprint}}}};
  for (const Related& related : finding.related)
  {
    Json other = locationOf(related.place);
    other["id"] = made.contains("relatedLocations") ? made["relatedLocations"].size() : 0;
    other["message"] = {{"text", related.text}};
    made["relatedLocations"].push_back(other);
  }
  if (!finding.fixes.is_null())
    made["fixes"] = finding.fixes;
  return made;
}

Json invocationOf(const Report& report)
{
  Json notifications = Json::array();
  for (const Failure& failure : report.failures)
    notifications.push_back({{"level", "error"}, {"message", {{"text", failure.text}}}});
  return {{"executionSuccessful", notifications.empty()}, {"toolExecutionNotifications", notifications}};
}

} // namespace

void tellSarif(std::ostream& out, const Report& report)
{
  Json rules = Json::array();
  for (const RuleText& rule : report.rules)
    rules.push_back(ruleOf(rule));
  Json results = Json::array();
  for (const Finding& finding : report.findings)
    results.push_back(resultOf(report, finding));
  const Json driver = {{"name", report.tool}, {"version", SDM_VERSION}, {"rules", rules}};
  const Json run = {{"tool", {{"driver", driver}}},
                    {"invocations", Json::array({invocationOf(report)})},
                    {"columnKind", "unicodeCodePoints"},
                    {"results", results}};
  write(out, {{"$schema", "https://docs.oasis-open.org/sarif/sarif/v2.1.0/os/schemas/sarif-schema-2.1.0.json"},
              {"version", "2.1.0"},
              {"runs", Json::array({run})}});
}

} // namespace cli::findings
