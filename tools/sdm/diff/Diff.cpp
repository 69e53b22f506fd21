// Options and help of the subcommand.
#include "Diff.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <memory>

#include "Comparison.h"
#include "findings/RuleQuestions.h"

namespace cli
{
namespace
{

using diff::DiffSettings;

constexpr const char* footer =
    "Two maps are compared by what the library makes of their lines. A change is an error when a stored value is lost "
    "or\n"
    "misread, a warning when a device behaves otherwise, a note when it is good to know. Values of secrets are not "
    "told.\n"
    "A map of the name - is read from standard input. The seven arguments that git hands to a program that shows\n"
    "differences are taken as well; then --fail-on is never.\n\n"
    "Exit codes:\n"
    "  0  no change of the level of --fail-on or worse that is not accepted\n"
    "  1  changes of that level or worse, or output was lost\n"
    "  2  wrong usage of the command line\n"
    "  3  the maps cannot be compared, or the accepted changes not be read or written\n";

struct Wanted
{
  DiffSettings diff;
  findings::RuleQuestions questions;
};

/// Why the maps are not what they should be; empty when they are.
std::string problemOf(const DiffSettings& settings)
{
  const std::size_t given = settings.maps.size();
  if (!settings.against.empty())
  {
    if (given == 1 && settings.maps.front() == "-")
      return "--against takes a file that git knows, and - is none";
    return given == 1 ? "" : "diff with --against needs one file, the new item map";
  }
  if (given == 2)
    return settings.maps[0] == "-" && settings.maps[1] == "-" ? "standard input is one map, and two are compared" : "";
  return diff::isFromGit(given) ? "" : "diff needs the files of two item maps, the old one and the new one";
}

ExitCode carryOut(Wanted& wanted, bool failOnGiven)
{
  DiffSettings& settings = wanted.diff;
  if (const auto code = findings::answer("diff", wanted.questions, settings.maps.empty() ? "" : settings.maps.front(),
                                         diff::ruleTexts(), settings.format))
    return *code;
  const std::string problem = problemOf(settings);
  if (!problem.empty())
  {
    std::cerr << "sdm: " << problem << "\nTry `sdm diff --help`.\n";
    return exitUsage;
  }
  settings.forGit = settings.against.empty() && diff::isFromGit(settings.maps.size());
  if (settings.forGit && !failOnGiven)
    settings.failOn = findings::FailOn::never;
  return diff::compareMaps(settings);
}

} // namespace

Action addDiff(CLI::App& app)
{
  const auto wanted = std::make_shared<Wanted>();
  const auto failOnGiven = std::make_shared<bool>(false);
  DiffSettings& settings = wanted->diff;
  app.add_option("MAP", settings.maps, "The old item map and the new one")->type_name("FILE");
  app.add_option("--against", settings.against, "Take the old map from this commit of git; MAP is the new one alone")
      ->type_name("REV")
      ->check([](const std::string& text) { return text.empty() ? "the name of a commit is missing" : ""; }, "");
  findings::addFailOnOption(app, settings.failOn,
                            "From which level on a change makes the exit code 1: error, warning, note, or never",
                            "note")
      ->each([failOnGiven](const std::string&) { *failOnGiven = true; });
  findings::addFormatOptions(app, settings.format);
  app.add_option("--accept", settings.accept, "Pass over the changes that are listed in this file")->type_name("FILE");
  app.add_option("--write-accept", settings.writeAccept,
                 "List all changes in this file, with reasons to fill in; those that it has stay")
      ->type_name("FILE");
  findings::addRuleOptions(app, wanted->questions, diff::ruleTexts());
  app.footer(footer);
  return [wanted, failOnGiven] { return carryOut(*wanted, *failOnGiven); };
}

} // namespace cli
