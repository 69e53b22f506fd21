// Options and help; the work is in the command loop.
#include "Run.h"

#include <CLI/CLI.hpp>

#include <chrono>
#include <memory>
#include <string>

#include "base/OneOf.h"
#include "prompt/CommandLoop.h"
#include "prompt/Commands.h"

namespace cli
{
namespace
{

/// The option texts are laid out for as many.
constexpr std::size_t helpColumns = 80;

std::string footer()
{
  return "Commands come from the terminal, with line editing, history and completion by Tab, or line by line from a\n"
         "pipe; a line that begins with # is passed over. From a pipe, standard output has the answers of commands "
         "alone;\n"
         "reports of starts, refusals, notices and log lines go to standard error. On a terminal, log lines go to\n"
         "log/device.log in the device folder only. Ctrl-C takes a line back; while a command runs, it says where "
         "that\n"
         "is, and a second one ends the program. NO_COLOR in the environment turns colours off.\n\n"
         "Commands:\n" +
         commandSummary(helpColumns) +
         "\n"
         "Exit codes:\n"
         "  0  done\n"
         "  1  the start or a command of a script was refused or failed, or output was lost\n"
         "  2  wrong usage of the command line\n"
         "  3  the device cannot be brought up: service, item map, folder, database or key\n"
         "  130  interrupted\n";
}

} // namespace

Action addRun(CLI::App& run)
{
  const auto settings = std::make_shared<RunSettings>();
  run.add_option("--service", settings->service, "Shared object of the service; without it the sample service")
      ->type_name("FILE");
  run.add_option("--map", settings->map, "Item map file; without it that of the service")->type_name("FILE");
  run.add_option("--device", settings->device, "Folder of the device, made when it is not there")
      ->type_name("DIR")
      ->check([](const std::string& folder) { return folder.empty() ? "the name of a folder is empty" : ""; })
      ->capture_default_str();
  run.add_flag("--take-over", settings->takeOver,
               "Let a device folder that belongs to another service be this one's from now on");
  run.add_option("--interfaces", settings->interfaces,
                 "Physical interfaces of the unit; with 2, 3 or 4 the alternative defaults apply")
      ->type_name("N")
      ->check(between(0, 64))
      ->capture_default_str();
  run.add_option("--log-level", settings->logLevel,
                 "How much is logged: 2 failures, 3 refusals, 4 operations, 5 with requests, 6 everything")
      ->type_name("L")
      ->check(between(0, 6))
      ->capture_default_str();
  run.add_flag("--show-log", settings->showLog, "Show log lines on the terminal as well");
  run.add_flag("--quiet", settings->quiet, "Leave out reports of starts that went well, and log lines");
  run.add_option_function<std::int64_t>(
         "--slow-wait", [settings](std::int64_t limit) { settings->slowWait = std::chrono::milliseconds(limit); },
         "Log whoever waits longer for the service's lock, and who holds it; 0 logs none")
      ->type_name("MS")
      ->check(between(0, 3600000))
      ->default_str(std::to_string(settings->slowWait.count()));
  CLI::Option* record =
      run.add_option("--record", settings->record,
                     "File for a transcript of the run, without its secrets; the device has to be a new one")
          ->type_name("FILE");
  run.add_flag("--force", settings->force, "Let --record overwrite a file that is there already")->needs(record);
  run.footer(footer());
  return [settings] { return runDevice(*settings); };
}

} // namespace cli
