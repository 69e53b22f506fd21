#include "Arguments.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <string>

#include "Commands.h"
#include "Shown.h"
#include "Suggestion.h"

namespace cli
{
namespace
{

constexpr const char* about =
    "Runs a sample communications service on a device that lasts in a folder, and lets you read and change its "
    "configuration.";

constexpr const char* exitCodes = "Exit codes:\n"
                                  "  0  done\n"
                                  "  1  a command of a script was refused or failed, or output was lost\n"
                                  "  2  wrong usage of the command line\n"
                                  "  3  the device cannot be brought up: item map, folder, database or key\n";

std::string runFooter()
{
  return "Commands come from the terminal, with line editing, history and completion by Tab, or line by line from a\n"
         "pipe; a line that begins with # is passed over. Log lines go to standard error and to log/device.log in\n"
         "the device folder, all else to standard output. NO_COLOR in the environment turns colours off.\n\n"
         "Commands:\n" +
         commandSummary() + "\n" + exitCodes;
}

void addRunOptions(CLI::App& run, RunSettings& settings)
{
  run.add_option("--map", settings.map, "Item map file; without it that of the sample service")->type_name("FILE");
  run.add_option("--device", settings.device, "Folder of the device, made when it is not there")
      ->type_name("DIR")
      ->check([](const std::string& folder) { return folder.empty() ? "the name of a folder is empty" : ""; })
      ->capture_default_str();
  run.add_option("--interfaces", settings.interfaces,
                 "Physical interfaces of the unit; with 2, 3 or 4 the alternative defaults apply")
      ->type_name("N")
      ->check(CLI::Range(0, 64))
      ->capture_default_str();
  run.add_option("--log-level", settings.logLevel,
                 "How much is logged: 2 failures, 3 refusals, 4 operations, 5 with requests, 6 everything")
      ->type_name("L")
      ->check(CLI::Range(0, 6))
      ->capture_default_str();
  run.footer(runFooter());
}

void suggestWords(const std::vector<std::string>& words)
{
  static const std::vector<std::string> known = {"run",      "--help",       "--version",  "--map",
                                                 "--device", "--interfaces", "--log-level"};
  for (const std::string& word : words)
    std::cerr << didYouMean(word, known, "\n");
}

ExitCode explain(const CLI::App& app, const CLI::ParseError& error)
{
  if (error.get_exit_code() == 0)
  {
    app.exit(error);
    return exitDone;
  }
  const std::vector<std::string> unknown = app.remaining(true);
  if (unknown.empty())
    std::cerr << "sdm: " << shown(error.what()) << "\n";
  for (const std::string& word : unknown)
    std::cerr << "sdm: " << shownValue(word) << " is not expected here\n";
  suggestWords(unknown);
  std::cerr << "Try `sdm --help` or `sdm run --help`.\n";
  return exitUsage;
}

} // namespace

std::variant<RunSettings, ExitCode> readArguments(int argc, const char* const* argv)
{
  RunSettings settings;
  CLI::App app(about, "sdm");
  app.set_version_flag("--version", std::string("sdm ") + SDM_VERSION);
  app.footer(std::string("`sdm run --help` tells the options and commands.\n\n") + exitCodes);
  app.require_subcommand(1);
  CLI::App* run = app.add_subcommand("run", "Bring the device up, then take commands");
  addRunOptions(*run, settings);
  try
  {
    app.parse(argc, argv);
  }
  catch (const CLI::ParseError& error)
  {
    return explain(app, error);
  }
  return settings;
}

} // namespace cli
