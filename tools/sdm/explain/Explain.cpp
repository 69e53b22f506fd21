#include "explain/Explain.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <unistd.h>

#include "Shown.h"
#include "Suggestion.h"
#include "explain/Explanation.h"

namespace cli
{
namespace
{

constexpr const char* footer =
    "The history is what `sdm run` wrote into the folder; nothing is started, and the device may be in use. Values of\n"
    "secrets are masked.\n\n"
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

std::vector<std::string> knownIds(const std::vector<HistoryEvent>& events)
{
  std::vector<std::string> ids;
  for (const HistoryEvent& event : events)
  {
    if (std::find(ids.begin(), ids.end(), event.rootId) == ids.end())
      ids.push_back(event.rootId);
  }
  return ids;
}

ExitCode explainItem(const ExplainSettings& settings)
{
  std::vector<HistoryEvent> events = History::read(settings.device);
  const std::vector<std::string> known = knownIds(events);
  if (std::find(known.begin(), known.end(), settings.rootId) == known.end())
  {
    const std::string hint = didYouMean(settings.rootId, known);
    std::cerr << "sdm: nothing is known of an item " << shownValue(settings.rootId) << " in "
              << shown(settings.device.string()) << (hint.empty() ? "" : "; " + hint) << "\n";
    return exitRefused;
  }
  events.erase(std::remove_if(events.begin(), events.end(),
                              [&](const HistoryEvent& event) { return event.rootId != settings.rootId; }),
               events.end());
  if (settings.json)
    printExplanationAsJson(std::cout, settings.rootId, events, lastLiveEvent(events));
  else
    printExplanation(std::cout, Style(wantsColours(STDOUT_FILENO)), settings.rootId, events, lastLiveEvent(events));
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
