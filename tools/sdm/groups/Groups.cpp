// Options and help, and the walk over groups and changes.
#include "Groups.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

#include "GroupReport.h"
#include "base/JsonText.h"
#include "base/OneOf.h"
#include "base/ScratchFolder.h"
#include "base/Shown.h"
#include "base/StartError.h"
#include "base/Style.h"
#include "base/Suggestion.h"
#include "map/Masking.h"
#include "service/LoadedService.h"

namespace cli
{
namespace
{

using groups::changesOf;
using groups::GroupOfItems;
using groups::GroupReport;
using groups::groupsOf;
using groups::jsonOf;
using groups::MoreValues;
using groups::namesIn;
using groups::ordersOf;
using groups::PermutationTrial;
using groups::printReport;
using groups::tryGroup;
using Json = nlohmann::ordered_json;

constexpr const char* footer =
    "Without --permute the groups are listed. With it, changes of each group are requested in every order of its "
    "items\n"
    "(120 orders for more than five), each on a device of its own that is as a first start left it, in a process of\n"
    "its own.\n\n"
    "Exit codes:\n"
    "  0  done; with --permute, no order matters\n"
    "  1  an order matters, a request ends the service or does not come back, or output was lost\n"
    "  2  wrong usage of the command line\n"
    "  3  the service cannot be brought up, or the map not be read\n";

struct GroupsSettings
{
  std::vector<std::string> names;
  std::optional<std::filesystem::path> service;
  std::optional<std::filesystem::path> map;
  std::vector<std::string> values;
  /// For one start of the service with a request.
  std::chrono::seconds patience{60};
  bool permute = false;
  bool json = false;
};

void write(const Json& document)
{
  std::cout << shownJson(jsonText(document, 2)) << "\n";
}

/// Wrong usage that shows only when the map was read.
class UsageError : public std::runtime_error
{
public:
  using std::runtime_error::runtime_error;
};

std::vector<GroupOfItems> chosenGroups(const ItemTable& items, const std::vector<std::string>& names)
{
  std::vector<GroupOfItems> groups = groupsOf(items);
  std::vector<std::string> known;
  known.reserve(groups.size());
  for (const GroupOfItems& group : groups)
    known.push_back(group.name);
  for (const std::string& name : names)
  {
    if (std::find(known.begin(), known.end(), name) != known.end())
      continue;
    const std::string hint = didYouMean(name, known);
    throw UsageError("there is no group " + shownValue(name) + (hint.empty() ? "" : "; " + hint));
  }
  const auto unwanted = [&](const GroupOfItems& group)
  { return !names.empty() && std::find(names.begin(), names.end(), group.name) == names.end(); };
  groups.erase(std::remove_if(groups.begin(), groups.end(), unwanted), groups.end());
  return groups;
}

MoreValues givenValues(const ItemTable& items, const std::vector<std::string>& values)
{
  MoreValues given;
  for (const std::string& text : values)
  {
    const std::size_t end = text.find('=');
    const std::string rootId = text.substr(0, end);
    const MapItem* item = items.find(rootId);
    if (end == std::string::npos || item == nullptr || item->group.empty())
      throw UsageError("--set takes ID=VALUE, where ID is a member of a group; " + shownValue(rootId) + " is none");
    given[rootId].push_back(text.substr(end + 1));
  }
  return given;
}

ExitCode listGroups(const std::vector<GroupOfItems>& groups, bool asJson)
{
  Json document = Json::array();
  for (const GroupOfItems& group : groups)
  {
    const auto names = namesIn(group, ordersOf(group.members.size()).front());
    document.push_back({{"group", group.name}, {"items", names}});
    std::string line;
    for (const std::string& name : names)
      line += (line.empty() ? "" : ", ") + shown(name);
    if (!asJson)
      std::cout << shown(group.name) << ": " << line << "\n";
  }
  if (asJson)
    write({{"groups", document}});
  return exitDone;
}

ExitCode permute(const GroupsSettings& settings, const std::filesystem::path& service, const std::filesystem::path& map,
                 const std::vector<GroupOfItems>& groups, const ItemTable& items)
{
  const MoreValues more = givenValues(items, settings.values);
  const Masking masking(items);
  const ScratchFolder scratch("groups");
  Progress progress("starting the service");
  const PermutationTrial trial(service, map, scratch.path(), settings.patience, progress);
  const auto current = trial.currentValues(items);
  Json document = Json::array();
  bool good = true;
  for (const GroupOfItems& group : groups)
  {
    const GroupReport report = tryGroup(trial, group, changesOf(group, more, current), progress);
    good = good && report.isGood();
    document.push_back(jsonOf(report, masking));
    progress.clear();
    if (!settings.json)
      printReport(report, masking, Style(wantsColours(STDOUT_FILENO)));
  }
  if (settings.json)
    write({{"groups", document}});
  return good ? exitDone : exitRefused;
}

ExitCode runGroups(const GroupsSettings& settings)
{
  try
  {
    const LoadedService loaded(settings.service.value_or(sampleService()));
    const std::filesystem::path map = std::filesystem::absolute(settings.map ? *settings.map : loaded.itemMap());
    const ItemTable items(map);
    const auto groups = chosenGroups(items, settings.names);
    return settings.permute ? permute(settings, loaded.file(), map, groups, items) : listGroups(groups, settings.json);
  }
  catch (const UsageError& error)
  {
    std::cerr << "sdm: " << error.what() << "\nTry `sdm groups --help`.\n";
    return exitUsage;
  }
}

} // namespace

Action addGroups(CLI::App& app)
{
  const auto settings = std::make_shared<GroupsSettings>();
  app.add_option("GROUP", settings->names, "Groups, without any all of them")->type_name("");
  CLI::Option* permuting =
      app.add_flag("--permute", settings->permute, "Request changes of each group in every order of its items");
  app.add_option("--service", settings->service, "Shared object of the service; without it the sample service")
      ->type_name("FILE");
  app.add_option("--map", settings->map, "Item map file; without it that of the service")->type_name("FILE");
  app.add_option("--set", settings->values, "A value to try beside the defaults, may be given again and again")
      ->type_name("ID=VALUE")
      ->allow_extra_args(false)
      ->needs(permuting);
  app.add_option_function<unsigned>(
         "--timeout", [settings](unsigned seconds) { settings->patience = std::chrono::seconds(seconds); },
         "Seconds after which a request that does not come back counts as one that ends the service")
      ->type_name("S")
      ->check(between(1, 86400))
      ->default_str(std::to_string(settings->patience.count()));
  app.add_flag("--json", settings->json, "Write one JSON document");
  app.footer(footer);
  return [settings] { return runGroups(*settings); };
}

} // namespace cli
