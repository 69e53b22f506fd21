#include "Check.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>
#include <map>
#include <memory>

#include "base/OneOf.h"
#include "base/Shown.h"
#include "base/Suggestion.h"

namespace cli
{
namespace
{

using check::CheckSettings;
using check::Format;

constexpr const char* footer =
    "A finding is an error when something in the map does not work, a warning when something is probably not\n"
    "meant, a note when it is good to know. A map of the name - is read from standard input.\n"
    "With --service the service is brought up on a scratch device in a process of its own; each setter gets its\n"
    "defaults, each getter is asked for them, and the validator judges each group.\n\n"
    "Exit codes:\n"
    "  0  no errors; with --strict no warnings either\n"
    "  1  errors, with --strict or warnings, or output was lost\n"
    "  2  wrong usage of the command line\n"
    "  3  a map cannot be read or mended, or the service not be loaded\n";

struct Wanted
{
  CheckSettings check;
  /// Empty for all rules.
  std::string explained;
  bool explains = false;
  bool lists = false;
};

/// Refuses an unknown rule, with those that might be meant.
std::string refusalOfRule(const std::string& id)
{
  if (id.empty() || check::findRule(id) != nullptr)
    return "";
  std::vector<std::string> known;
  for (const check::Rule* rule : check::allRules())
    known.emplace_back(rule->id);
  const std::string hint = didYouMean(id, known);
  return "there is no rule " + shownValue(id) + (hint.empty() ? "" : "; " + hint);
}

ExitCode carryOut(const Wanted& wanted)
{
  if ((wanted.lists || wanted.explains) && !wanted.check.maps.empty())
  {
    std::cerr << "sdm: " << (wanted.lists ? "--rules lists" : "--explain tells of") << " rules and takes no map, but "
              << shownValue(wanted.check.maps.front()) << "\nTry `sdm check --help`.\n";
    return exitUsage;
  }
  if (wanted.lists || (wanted.explains && wanted.explained.empty()))
    check::listRules(wanted.check.format);
  else if (wanted.explains)
    check::explainRule(*check::findRule(wanted.explained), wanted.check.format);
  if (wanted.lists || wanted.explains)
    return exitDone;
  if (wanted.check.maps.empty())
  {
    std::cerr << "sdm: check needs the file of an item map\nTry `sdm check --help`.\n";
    return exitUsage;
  }
  if (wanted.check.fix && std::count(wanted.check.maps.begin(), wanted.check.maps.end(), "-") > 0)
  {
    std::cerr << "sdm: --fix mends files, and - is none\nTry `sdm check --help`.\n";
    return exitUsage;
  }
  return check::checkMaps(wanted.check);
}

} // namespace

Action addCheck(CLI::App& app)
{
  const auto wanted = std::make_shared<Wanted>();
  CheckSettings& settings = wanted->check;
  static const std::map<std::string, Format> formats = {
      {"text", Format::text}, {"json", Format::json}, {"sarif", Format::sarif}};
  app.add_option("MAP", settings.maps, "Item map files")->type_name("FILE");
  app.add_flag("--strict", settings.strict, "Warnings count as errors");
  app.add_option("--format", settings.format, "How findings are told: text, json, or sarif, which is SARIF 2.1.0")
      ->type_name("FORMAT")
      ->transform(oneOf(formats))
      ->default_str("text");
  app.add_flag_callback(
      "--json", [wanted] { wanted->check.format = Format::json; }, "The same as --format json");
  app.add_flag("--fix", settings.fix, "Mend the files where it is safe, and tell what is left");
  app.add_option("--service", settings.service, "Try the maps with this service, the shared object of one")
      ->type_name("FILE");
  app.add_option("--ignore", settings.ignored, "Do not look at a rule; may be given more than once")
      ->type_name("RULE")
      ->allow_extra_args(false)
      ->check(refusalOfRule, "");
  CLI::Option* explain =
      app.add_option("--explain", wanted->explained, "Tell what is behind a rule; without a rule list them all")
          ->type_name("RULE")
          ->expected(0, 1)
          ->check(refusalOfRule, "");
  app.add_flag("--rules", wanted->lists, "List all rules");
  app.footer(footer);
  // The options are gone when the action runs.
  app.parse_complete_callback([wanted, explain] { wanted->explains = explain->count() > 0; });
  return [wanted] { return carryOut(*wanted); };
}

} // namespace cli
