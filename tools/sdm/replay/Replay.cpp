// Options and help, and the first difference as it is shown.
#include "Replay.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <memory>
#include <unistd.h>

#include "Verdict.h"
#include "base/JsonText.h"
#include "base/OneOf.h"
#include "base/Shown.h"

namespace cli
{
namespace
{

using replay::Difference;
using replay::Verdict;

constexpr const char* footer =
    "The commands run on a new device in a temporary folder, with stand-ins for secrets. Everything is compared\n"
    "but what the platform logs of its own.\n\n"
    "Exit codes:\n"
    "  0  all went as recorded\n"
    "  1  something differs, or output was lost\n"
    "  2  wrong usage of the command line\n"
    "  3  the transcript cannot be read, or the device cannot be brought up\n";

struct ReplayOptions
{
  std::string file;
  replay::ReplaySettings settings;
  bool json = false;
};

void tell(const ReplayOptions& wanted, const Verdict& verdict, const Style& style)
{
  if (!verdict.difference)
  {
    std::cout << shown(wanted.file) << ": " << style.good("as recorded") << ", " << counted(verdict.commands, "command")
              << "\n";
    return;
  }
  const Difference& difference = *verdict.difference;
  std::cout << style.strong(shown(wanted.file) + ":" + std::to_string(difference.line)) << ": "
            << style.bad("the first difference") << ", "
            << (difference.command.empty() ? "at the start" : "after the command " + shown(difference.command)) << "\n";
  for (const std::string& line : difference.before)
    std::cout << "    " << style.faint(shown(line)) << "\n";
  const auto side = [](const std::string& text) { return text.empty() ? "nothing" : shown(text); };
  std::cout << "  - expected  " << side(difference.expected) << "\n  + actual    " << side(difference.actual) << "\n";
  for (const std::string& note : verdict.notes)
    std::cout << "  " << style.notable("note") << " " << note << "\n";
}

void tellJson(const ReplayOptions& wanted, const Verdict& verdict)
{
  nlohmann::ordered_json told = {{"file", wanted.file}, {"same", !verdict.difference}, {"commands", verdict.commands}};
  if (verdict.difference)
  {
    const Difference& difference = *verdict.difference;
    told["difference"] = {{"line", difference.line},
                          {"command", difference.command},
                          {"before", difference.before},
                          {"expected", difference.expected},
                          {"actual", difference.actual}};
  }
  told["notes"] = verdict.notes;
  std::cout << shownJson(jsonText(told, 2)) << "\n";
}

} // namespace

void replay::addReplayOptions(CLI::App& app, ReplaySettings& settings)
{
  app.add_option("--service", settings.service, "Shared object of the service; without it the sample service")
      ->type_name("FILE");
  app.add_option("--map", settings.map, "Item map file; without it that of the service")->type_name("FILE");
  app.add_option_function<unsigned>(
         "--timeout", [&settings](unsigned seconds) { settings.patience = std::chrono::seconds(seconds); },
         "Seconds after which a transcript that does not end counts as different")
      ->type_name("S")
      ->check(between(1, 86400))
      ->default_str(std::to_string(settings.patience.count()));
}

Action addReplay(CLI::App& app)
{
  const auto wanted = std::make_shared<ReplayOptions>();
  app.add_option("TRANSCRIPT", wanted->file, "File that sdm run --record wrote")->type_name("FILE")->required();
  replay::addReplayOptions(app, wanted->settings);
  app.add_flag("--json", wanted->json, "Tell the result as JSON");
  app.footer(footer);
  return [wanted]
  {
    Progress progress("running " + shown(wanted->file) + " again");
    const Verdict verdict =
        replay::replayAndCompare(transcript::readTranscript(wanted->file), wanted->settings, progress);
    progress.clear();
    if (wanted->json)
      tellJson(*wanted, verdict);
    else
      tell(*wanted, verdict, Style(wantsColours(STDOUT_FILENO)));
    return verdict.difference ? exitRefused : exitDone;
  };
}

} // namespace cli
