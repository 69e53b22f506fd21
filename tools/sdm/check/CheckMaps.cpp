// Runs the checks over the maps, and tells what they found.
#include "Check.h"

#include <algorithm>
#include <iostream>
#include <unistd.h>
#include <utility>

#include "Linter.h"
#include "Result.h"
#include "Rules.h"
#include "ServiceFindings.h"
#include "base/Progress.h"
#include "base/Shown.h"
#include "base/StartError.h"
#include "base/Style.h"
#include "map/MapFile.h"

namespace cli::check
{

std::size_t Result::count(Severity severity) const
{
  return static_cast<std::size_t>(std::count_if(
      findings.begin(), findings.end(), [&](const Finding& finding) { return finding.rule->severity == severity; }));
}

std::size_t Result::items() const
{
  if (map == nullptr)
    return 0;
  return static_cast<std::size_t>(std::count_if(map->lines().begin(), map->lines().end(),
                                                [](const MapLine& line) { return line.kind == MapLine::Kind::item; }));
}

namespace
{

std::vector<const Rule*> rulesBut(const std::vector<std::string>& ignored)
{
  std::vector<const Rule*> rules;
  std::copy_if(allRules().begin(), allRules().end(), std::back_inserter(rules),
               [&](const Rule* rule) { return std::find(ignored.begin(), ignored.end(), rule->id) == ignored.end(); });
  return rules;
}

void mendFile(Result& result, const std::vector<const Rule*>& rules)
{
  MendedMap made = mend(*result.map, rules);
  if (made.mended.empty())
    return;
  replaceMap(result.path, result.map->bytes(), made.content);
  result.mended = std::move(made.mended);
  result.map = std::make_unique<MapText>(result.path, std::move(made.content));
}

void tryService(Result& result, const std::filesystem::path& service, const std::vector<const Rule*>& rules,
                Progress& progress)
{
  progress.tell("trying " + shown(service.string()) + " with " + shown(result.path));
  for (Finding& finding : serviceFindings(*result.map, service, rules, progress))
    result.findings.push_back(std::move(finding));
  sortByPlace(result.findings);
}

Result checkMap(const std::string& path, const CheckSettings& settings, const std::vector<const Rule*>& rules)
{
  Result result;
  result.path = path;
  try
  {
    Progress progress("checking " + shown(path));
    result.map = std::make_unique<MapText>(path, readMap(path));
    try
    {
      if (settings.fix)
        mendFile(result, rules);
    }
    catch (const FileError& error)
    {
      result.failure = error.what();
    }
    result.findings = findingsOf(
        *result.map, rules,
        [&](double done)
        { progress.tell("checking " + shown(path) + ": " + std::to_string(static_cast<int>(done * 100)) + " %"); });
    if (settings.service && result.items() > 0)
      tryService(result, *settings.service, rules, progress);
  }
  catch (const StartError& error)
  {
    result.failure = error.what();
  }
  catch (const FileError& error)
  {
    result.failure = error.what();
  }
  return result;
}

void tellSummary(const std::vector<Result>& results, const Style& style)
{
  std::size_t errors = 0;
  std::size_t warnings = 0;
  std::size_t notes = 0;
  std::size_t items = 0;
  std::size_t fixable = 0;
  for (const Result& result : results)
  {
    errors += result.count(Severity::error);
    warnings += result.count(Severity::warning);
    notes += result.count(Severity::note);
    items += result.items();
    fixable += static_cast<std::size_t>(std::count_if(result.findings.begin(), result.findings.end(),
                                                      [](const Finding& finding) { return !finding.fix.empty(); }));
  }
  std::cout << counted(items, "item") << ": " << counted(errors, "error") << ", " << counted(warnings, "warning")
            << ", " << counted(notes, "note") << "\n";
  if (fixable > 0)
    std::cout << style.faint("--fix mends " + std::to_string(fixable) + " of these.") << "\n";
  if (errors + warnings + notes > 0)
    std::cout << style.faint("`sdm check --explain RULE` tells what is behind a rule.") << "\n";
}

void tell(const std::vector<Result>& results, const CheckSettings& settings, const std::vector<const Rule*>& rules)
{
  const bool terminal = isatty(STDOUT_FILENO) != 0;
  const Style style(wantsColours(STDOUT_FILENO));
  if (settings.format == findings::Format::json)
    return tellJson(std::cout, results);
  if (findings::isShared(settings.format))
    return findings::tell(std::cout, reportOf(results, rules, settings.failOn), settings.format);
  for (const Result& result : results)
    tellText(std::cout, result, style, terminal);
  if (terminal)
    tellSummary(results, style);
}

} // namespace

ExitCode checkMaps(const CheckSettings& settings)
{
  const std::vector<const Rule*> rules = rulesBut(settings.ignored);
  std::vector<Result> results;
  ExitCode code = exitDone;
  for (const std::string& path : settings.maps)
  {
    results.push_back(checkMap(path, settings, rules));
    const Result& result = results.back();
    const auto fails = [&](const Finding& finding) { return counts(settings.failOn, finding.rule->severity); };
    if (std::any_of(result.findings.begin(), result.findings.end(), fails))
      code = std::max(code, exitRefused);
    if (!result.failure.empty())
      code = exitCannot;
  }
  tell(results, settings, rules);
  std::cout.flush();
  for (const Result& result : results)
  {
    if (!result.failure.empty())
      std::cerr << "sdm: " << shown(result.failure) << "\n";
  }
  return code;
}

} // namespace cli::check
