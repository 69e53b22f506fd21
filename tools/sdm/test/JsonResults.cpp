// Results as JSON.
#include <ostream>

#include "Suite.h"
#include "base/JsonText.h"
#include "base/Shown.h"

namespace cli::test
{
namespace
{

using Json = nlohmann::ordered_json;

Json resultOf(const Result& result)
{
  Json told = {{"name", result.name}, {"passed", result.passed()}, {"seconds", result.duration.count()}};
  if (!result.passed())
    told["message"] = messageOf(result);
  if (result.difference)
    told["difference"] = {{"line", result.difference->line},
                          {"command", result.difference->command},
                          {"before", result.difference->before},
                          {"expected", result.difference->expected},
                          {"actual", result.difference->actual}};
  told["notes"] = result.notes;
  return told;
}

} // namespace

void tellJson(std::ostream& out, const Told& told)
{
  Json document = {{"version", 1}, {"folder", told.folder.string()}, {"tests", Json::array()}};
  for (const Result& result : told.results)
    document["tests"].push_back(resultOf(result));
  for (const CoverageOf& each : told.coverage)
    document["coverage"][each.kind] = {{"all", each.all}, {"neverRan", each.missing}};
  out << shownJson(jsonText(document, 2)) << "\n";
}

} // namespace cli::test
