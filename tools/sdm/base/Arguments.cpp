// Subcommands bring their options; here they are read, and mistakes are told in one way.
#include "Arguments.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "ProgramsBeside.h"
#include "Shown.h"
#include "Suggestion.h"

namespace cli
{
namespace
{

constexpr const char* about =
    "Runs a service on a device that lasts in a folder, and lets you read and change its configuration; helps to write "
    "services.";

constexpr const char* footer =
    "`sdm run --help` tells the options and commands, and what the exit codes mean there; so do the others.\n\n"
    "Exit codes:\n"
    "  0  done\n"
    "  1  something was refused or failed, or output was lost\n"
    "  2  wrong usage of the command line\n"
    "  3  what was asked for cannot be done: service, item map, folder, database or key\n";

void addOptionNames(const CLI::App& app, std::vector<std::string>& names)
{
  for (const CLI::Option* option : app.get_options())
  {
    for (const std::string& name : option->get_lnames())
      names.push_back("--" + name);
  }
}

std::vector<std::string> subcommandNames()
{
  std::vector<std::string> names = programsBeside();
  for (const Subcommand& each : subcommands())
    names.emplace_back(each.name);
  return names;
}

/// What may stand behind `sdm`, and behind the subcommand that was chosen.
std::vector<std::string> knownWords(const CLI::App& app, const CLI::App* chosen)
{
  std::vector<std::string> known = subcommandNames();
  addOptionNames(app, known);
  if (chosen != nullptr)
    addOptionNames(*chosen, known);
  return known;
}

ExitCode refuseSubcommand(const std::string& name)
{
  const std::string hint = didYouMean(name, subcommandNames(), "\n");
  std::cerr << "sdm: there is no subcommand " << shownValue(name);
  if (hint.empty())
    std::cerr << ", and no program " << shownValue("sdm-" + name) << " beside this one";
  std::cerr << "\n" << hint << "Try `sdm --help`.\n";
  return exitUsage;
}

/// What is wrong, in the words that the program has for it everywhere. The parser's errors begin with the option.
std::string inOwnWords(const CLI::ParseError& error)
{
  std::string text = error.what();
  const std::string kind = error.get_name();
  const std::string option = text.substr(0, text.find_first_of(": "));
  if (kind == "RequiresError")
    return option + " is for use with " + text.substr(text.rfind(' ') + 1) + " alone";
  if (kind == "RequiredError")
    return (option == "A" ? "a subcommand" : option) + " is missing";
  if (kind == "ArgumentMismatch" && text.find("flag override") != std::string::npos)
    return "--" + option + " takes no value";
  if (kind == "ArgumentMismatch")
    return option + (text.find("received") != std::string::npos ? " is given more than once" : " needs a value");
  return text;
}

/// What is wrong with the words behind the program's name: those that nobody expects, or what the parser says.
void tellOfUsage(const std::vector<std::string>& unknown, const std::vector<std::string>& known,
                 const CLI::ParseError& error)
{
  if (unknown.empty())
    std::cerr << "sdm: " << shown(inOwnWords(error)) << "\n";
  for (const std::string& word : unknown)
    std::cerr << "sdm: " << shownValue(word) << " is not expected here\n";
  for (const std::string& word : unknown)
    std::cerr << didYouMean(word, known, "\n");
}

ExitCode explain(const CLI::App& app, const CLI::ParseError& error)
{
  const auto chosen = app.get_subcommands();
  const std::vector<std::string> unknown = app.remaining(true);
  // Help on what is not there is no help.
  const bool lacksSubcommand = chosen.empty() && !unknown.empty() && unknown.front().front() != '-';
  if (error.get_exit_code() == 0 && !lacksSubcommand)
  {
    app.exit(error);
    return exitDone;
  }
  if (lacksSubcommand)
    return refuseSubcommand(unknown.front());
  tellOfUsage(unknown, knownWords(app, chosen.empty() ? nullptr : chosen.front()), error);
  const std::string name = chosen.empty() ? "run" : chosen.front()->get_name();
  std::cerr << "Try `sdm --help` or `sdm " << name << " --help`.\n";
  return exitUsage;
}

/// What this program can do itself comes first: nobody takes a subcommand's place by a file beside it.
bool isProgramBeside(const std::string& name)
{
  const auto isOwn = [&](const Subcommand& each) { return name == each.name; };
  const auto programs = programsBeside();
  return std::none_of(subcommands().begin(), subcommands().end(), isOwn) &&
         std::find(programs.begin(), programs.end(), name) != programs.end();
}

} // namespace

std::variant<Action, ExitCode> readArguments(int argc, const char* const* argv)
{
  if (argc > 1 && isProgramBeside(argv[1]))
    becomeProgramBeside(argv[1], argv);
  CLI::App app(about, "sdm");
  app.set_version_flag("--version", std::string("sdm ") + SDM_VERSION);
  app.footer(footer);
  app.require_subcommand(1);
  // For the subcommands as well: an option without a value would take "=no" for a yes.
  app.option_defaults()->disable_flag_override();
  std::vector<std::pair<const CLI::App*, Action>> actions;
  for (const Subcommand& each : subcommands())
  {
    CLI::App* added = app.add_subcommand(each.name, each.summary);
    actions.emplace_back(added, each.add(*added));
  }
  for (const std::string& name : programsBeside())
  {
    if (isProgramBeside(name))
      app.add_subcommand(name, "Run the program sdm-" + name + ", which is installed beside this one");
  }
  try
  {
    app.parse(argc, argv);
  }
  catch (const CLI::ParseError& error)
  {
    return explain(app, error);
  }
  for (const auto& [subcommand, action] : actions)
  {
    if (subcommand->parsed())
      return action;
  }
  return exitUsage;
}

std::variant<Action, ExitCode> readArgumentsOf(const Subcommand& only, int argc, const char* const* argv)
{
  CLI::App app(only.summary, std::string("sdm ") + only.name);
  app.set_version_flag("--version", std::string("sdm-") + only.name + " " + SDM_VERSION);
  const Action action = only.add(app);
  try
  {
    app.parse(argc, argv);
  }
  catch (const CLI::ParseError& error)
  {
    if (error.get_exit_code() == 0)
    {
      app.exit(error);
      return exitDone;
    }
    std::vector<std::string> known;
    addOptionNames(app, known);
    tellOfUsage(app.remaining(), known, error);
    std::cerr << "Try `sdm " << only.name << " --help`.\n";
    return exitUsage;
  }
  return action;
}

} // namespace cli
