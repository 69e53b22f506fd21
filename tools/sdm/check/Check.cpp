// Options and help of the subcommand; the work is in CheckMaps.cpp.
#include "Check.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>
#include <memory>

#include "Result.h"
#include "base/Shown.h"
#include "findings/RuleQuestions.h"

namespace cli
{
namespace
{

using check::CheckSettings;

constexpr const char* footer =
    "A finding is an error when something in the map does not work, a warning when something is probably not\n"
    "meant, a note when it is good to know. A map of the name - is read from standard input.\n"
    "With --service the service is brought up on a scratch device in a process of its own; each setter gets its\n"
    "defaults, each getter is asked for them, and the validator judges each group.\n\n"
    "Exit codes:\n"
    "  0  no finding of the level of --fail-on or worse\n"
    "  1  findings of that level or worse, or output was lost\n"
    "  2  wrong usage of the command line\n"
    "  3  a map cannot be read or mended, or the service not be loaded\n";

struct CheckOptions
{
  CheckSettings check;
  findings::RuleQuestions questions;
  std::vector<findings::RuleText> rules = check::textsOf(check::allRules());
};

ExitCode carryOut(const CheckOptions& wanted)
{
  const std::vector<std::string>& maps = wanted.check.maps;
  if (const auto code = findings::answer("check", wanted.questions, maps.empty() ? "" : maps.front(), wanted.rules,
                                         wanted.check.format))
    return *code;
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
  const auto wanted = std::make_shared<CheckOptions>();
  CheckSettings& settings = wanted->check;
  app.add_option("MAP", settings.maps, "Item map files")->type_name("FILE");
  CLI::Option* failOn = findings::addFailOnOption(
      app, settings.failOn, "From which level on a finding makes the exit code 1: error, warning, note, or never",
      "error");
  app.add_flag_callback(
         "--strict", [wanted] { wanted->check.failOn = findings::FailOn::warning; }, "The same as --fail-on warning")
      ->excludes(failOn);
  findings::addFormatOptions(app, settings.format);
  app.add_flag("--fix", settings.fix, "Mend the files where it is safe, and tell what is left");
  app.add_option("--service", settings.service, "Try the maps with this service, the shared object of one")
      ->type_name("FILE");
  app.add_option("--ignore", settings.ignored, "Do not look at a rule; may be given more than once")
      ->type_name("RULE")
      ->allow_extra_args(false)
      ->check([wanted](const std::string& id) { return findings::refusalOfRule(wanted->rules, id); }, "");
  findings::addRuleOptions(app, wanted->questions, wanted->rules);
  app.footer(footer);
  return [wanted] { return carryOut(*wanted); };
}

} // namespace cli
