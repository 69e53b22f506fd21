#include "groups/Groups.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <chrono>
#include <functional>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

#include "Masking.h"
#include "ScratchFolder.h"
#include "Shown.h"
#include "StartError.h"
#include "Style.h"
#include "Suggestion.h"
#include "groups/Permutation.h"
#include "service/LoadedService.h"

namespace cli
{
namespace
{

using Json = nlohmann::ordered_json;

constexpr const char* footer =
    "Without --permute the groups are listed. With it, changes of each group are requested in every order of its "
    "items\n"
    "(120 orders for more than five), each on a device of its own that is as a first start left it.\n\n"
    "Exit codes:\n"
    "  0  done; with --permute, no order matters\n"
    "  1  an order matters\n"
    "  2  wrong usage of the command line\n"
    "  3  the service cannot be brought up, or the map not be read\n";

struct GroupsSettings
{
  std::vector<std::string> names;
  std::optional<std::filesystem::path> service;
  std::optional<std::filesystem::path> map;
  std::vector<std::string> values;
  bool permute = false;
  bool json = false;
};

/// Orders that come to the same.
struct Alike
{
  RequestOutcome outcome;
  std::vector<std::size_t> firstOrder;
  std::size_t orders = 0;
};

/// A change whose orders come to different outcomes.
struct Difference
{
  GroupChange change;
  std::vector<Alike> outcomes;
};

struct GroupReport
{
  const GroupOfItems* group;
  std::size_t changes = 0;
  std::size_t orders = 0;
  std::vector<Difference> differences;
};

/// Tells on a terminal how far a long trial is.
class Progress
{
public:
  void step(const std::string& group, std::size_t number, std::size_t all)
  {
    if (::isatty(STDERR_FILENO) == 0 || std::chrono::steady_clock::now() - began < std::chrono::seconds(1))
      return;
    std::cerr << "\r\x1b[K" << shown(group) << ": " << number << " of " << all << " requests" << std::flush;
    told = true;
  }
  ~Progress()
  {
    if (told)
      std::cerr << "\r\x1b[K" << std::flush;
  }

private:
  const std::chrono::steady_clock::time_point began = std::chrono::steady_clock::now();
  bool told = false;
};

std::vector<Alike> tryChange(const PermutationTrial& trial, const GroupOfItems& group, const GroupChange& change,
                             const std::function<void()>& step)
{
  std::vector<Alike> found;
  for (const auto& order : ordersOf(group.members.size()))
  {
    step();
    const RequestOutcome outcome = trial.run(group, change, order);
    auto same = std::find_if(found.begin(), found.end(), [&](const Alike& each) { return each.outcome == outcome; });
    if (same == found.end())
      same = found.insert(found.end(), {outcome, order, 0});
    ++same->orders;
  }
  return found;
}

GroupReport tryGroup(const PermutationTrial& trial, const GroupOfItems& group, const std::vector<GroupChange>& changes)
{
  GroupReport report{&group, changes.size(), ordersOf(group.members.size()).size(), {}};
  Progress progress;
  std::size_t number = 0;
  for (const GroupChange& change : changes)
  {
    auto outcomes =
        tryChange(trial, group, change, [&] { progress.step(group.name, ++number, report.changes * report.orders); });
    if (outcomes.size() > 1)
      report.differences.push_back({change, std::move(outcomes)});
  }
  return report;
}

/// The item that a line of an outcome is about, or null.
const MapItem* itemOf(const GroupOfItems& group, const std::string& subject)
{
  const std::string rootId = subject.substr(0, subject.rfind(' '));
  const auto found = std::find_if(group.members.begin(), group.members.end(),
                                  [&](const MapItem* member) { return member->rootId == rootId; });
  return found == group.members.end() ? nullptr : *found;
}

std::string masked(const GroupOfItems& group, const Masking& masking, const std::string& subject,
                   const std::string& text)
{
  const MapItem* item = itemOf(group, subject);
  return item != nullptr && masking.isSecret(*item) ? Masking::mask : text;
}

/// What not all outcomes have in common, in the words of one of them.
std::vector<std::pair<std::string, std::string>> peculiar(const Difference& difference, const RequestOutcome& outcome)
{
  std::map<std::string, std::string> subjects;
  for (const Alike& each : difference.outcomes)
  {
    for (const auto& [subject, text] : each.outcome)
      subjects.emplace(subject, "");
  }
  std::vector<std::pair<std::string, std::string>> lines;
  for (const auto& [subject, nothing] : subjects)
  {
    const auto textIn = [&name = subject](const RequestOutcome& one)
    {
      const auto found = one.find(name);
      return found == one.end() ? std::optional<std::string>() : found->second;
    };
    const bool common = std::all_of(difference.outcomes.begin(), difference.outcomes.end(),
                                    [&](const Alike& each) { return textIn(each.outcome) == textIn(outcome); });
    if (!common)
      lines.emplace_back(subject, textIn(outcome).value_or("(nothing)"));
  }
  return lines;
}

std::string orderText(const GroupOfItems& group, const std::vector<std::size_t>& order)
{
  std::string text;
  for (const std::size_t place : order)
    text += (text.empty() ? "" : ", ") + shown(group.members[place]->rootId);
  return text;
}

std::string counted(std::size_t count, const char* what)
{
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

void print(const GroupReport& report, const Masking& masking, const Style& style)
{
  const GroupOfItems& group = *report.group;
  std::cout << style.strong(shown(group.name)) << ": " << counted(group.members.size(), "item") << ", "
            << counted(report.changes, "change") << " in " << counted(report.orders, "order") << ": "
            << (report.differences.empty()
                    ? style.good("no order matters")
                    : style.bad("the order matters to " + std::to_string(report.differences.size())))
            << "\n";
  for (const Difference& difference : report.differences)
  {
    std::string values;
    for (std::size_t i = 0; i < group.members.size(); ++i)
      values += " " + shown(group.members[i]->rootId) + " " + masking.value(*group.members[i], difference.change[i]);
    std::cout << "  set" << values << "\n";
    for (const Alike& alike : difference.outcomes)
    {
      std::cout << "    " << alike.orders << (alike.orders == 1 ? " order: " : " orders, such as ")
                << orderText(group, alike.firstOrder) << "\n";
      for (const auto& [subject, text] : peculiar(difference, alike.outcome))
        std::cout << "      " << shown(subject) << ": " << shown(masked(group, masking, subject, text)) << "\n";
    }
  }
}

Json namesIn(const GroupOfItems& group, const std::vector<std::size_t>& order)
{
  Json names = Json::array();
  for (const std::size_t place : order)
    names.push_back(group.members[place]->rootId);
  return names;
}

Json jsonOf(const GroupOfItems& group, const Difference& difference, const Masking& masking)
{
  Json change = Json::object();
  for (std::size_t i = 0; i < group.members.size(); ++i)
    change[group.members[i]->rootId] =
        masking.isSecret(*group.members[i]) ? std::string(Masking::mask) : difference.change[i];
  Json outcomes = Json::array();
  for (const Alike& alike : difference.outcomes)
  {
    Json outcome = Json::object();
    for (const auto& [subject, text] : alike.outcome)
      outcome[subject] = masked(group, masking, subject, text);
    outcomes.push_back({{"orders", alike.orders}, {"order", namesIn(group, alike.firstOrder)}, {"outcome", outcome}});
  }
  return {{"change", change}, {"outcomes", outcomes}};
}

Json jsonOf(const GroupReport& report, const Masking& masking)
{
  Json differences = Json::array();
  for (const Difference& difference : report.differences)
    differences.push_back(jsonOf(*report.group, difference, masking));
  std::vector<std::size_t> all = ordersOf(report.group->members.size()).front();
  return {{"group", report.group->name},
          {"items", namesIn(*report.group, all)},
          {"changes", report.changes},
          {"orders", report.orders},
          {"differences", differences}};
}

void write(const Json& document)
{
  std::cout << document.dump(2, ' ', false, Json::error_handler_t::replace) << "\n";
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
    std::vector<std::size_t> all = ordersOf(group.members.size()).front();
    document.push_back({{"group", group.name}, {"items", namesIn(group, all)}});
    if (!asJson)
      std::cout << shown(group.name) << ": " << orderText(group, all) << "\n";
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
  const PermutationTrial trial(service, map, scratch.path());
  const auto current = trial.currentValues(items);
  Json document = Json::array();
  bool matters = false;
  for (const GroupOfItems& group : groups)
  {
    const GroupReport report = tryGroup(trial, group, changesOf(group, more, current));
    matters = matters || !report.differences.empty();
    document.push_back(jsonOf(report, masking));
    if (!settings.json)
      print(report, masking, Style(wantsColours(STDOUT_FILENO)));
  }
  if (settings.json)
    write({{"groups", document}});
  return matters ? exitRefused : exitDone;
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
    std::cerr << "sdm: " << error.what() << "\n";
    return exitUsage;
  }
}

} // namespace

Action addGroups(CLI::App& app)
{
  const auto settings = std::make_shared<GroupsSettings>();
  app.add_option("GROUP", settings->names, "Groups, without any all of them")->type_name("");
  app.add_flag("--permute", settings->permute, "Request changes of each group in every order of its items");
  app.add_option("--service", settings->service, "Shared object of the service; without it the sample service")
      ->type_name("FILE");
  app.add_option("--map", settings->map, "Item map file; without it that of the service")->type_name("FILE");
  app.add_option("--set", settings->values, "A value to try beside the defaults, may be given again and again")
      ->type_name("ID=VALUE")
      ->allow_extra_args(false);
  app.add_flag("--json", settings->json, "Write one JSON document");
  app.footer(footer);
  return [settings] { return runGroups(*settings); };
}

} // namespace cli
