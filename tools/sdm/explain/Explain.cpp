// Options and help; reads the history of a folder without bringing anything up.
#include "Explain.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <unistd.h>

#include "base/Shown.h"
#include "base/Suggestion.h"
#include "history/Explanation.h"
#include "history/History.h"

namespace cli
{
namespace
{

constexpr const char* footer =
    "The history is what `sdm run` wrote into the folder; nothing is started, and the device may be in use. Values of\n"
    "secrets are masked, long ones are cut short, and old events are dropped when there are many, which is told.\n\n"
    "Exit codes:\n"
    "  0  done\n"
    "  1  nothing is known of such an item\n"
    "  2  wrong usage of the command line\n"
    "  3  the folder has no history that can be read\n";

struct ExplainSettings
{
  std::string rootId;
  std::filesystem::path device = "device";
  bool json = false;
};

ExitCode explainItem(const ExplainSettings& settings)
{
  const ItemHistory history = History::read(settings.device, settings.rootId);
  if (history.events.empty())
  {
    const std::string hint = didYouMean(settings.rootId, History::knownIds(settings.device));
    std::cerr << "sdm: nothing is known of an item " << shownValue(settings.rootId) << " in "
              << shown(settings.device.string());
    if (history.dropped != 0)
      std::cerr << ", where " << droppedText(history);
    std::cerr << (hint.empty() ? "" : "; " + hint) << "\n";
    return exitRefused;
  }
  if (settings.json)
    printExplanationAsJson(std::cout, settings.rootId, history, lastLiveEvent(history));
  else
    printExplanation(std::cout, Style(wantsColours(STDOUT_FILENO)), settings.rootId, history, lastLiveEvent(history));
  return exitDone;
}

} // namespace

Action addExplain(CLI::App& app)
{
  const auto settings = std::make_shared<ExplainSettings>();
  app.add_option("ID", settings->rootId, "Root id of the item")->required()->type_name("");
  app.add_option("--device", settings->device, "Folder of the device")->type_name("DIR")->capture_default_str();
  app.add_flag("--json", settings->json, "Write one JSON document");
  app.footer(footer);
  return [settings] { return explainItem(*settings); };
}

} // namespace cli
