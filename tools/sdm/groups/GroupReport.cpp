// What became of the changes of a group, in the words of all its orders.
#include "GroupReport.h"

#include <algorithm>
#include <functional>
#include <iostream>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "base/Shown.h"

namespace cli::groups
{
namespace
{

using Json = nlohmann::ordered_json;

bool endsTheService(const Alike& alike)
{
  return alike.outcome.count("crash") != 0;
}

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
std::vector<std::pair<std::string, std::string>> peculiar(const TriedChange& difference, const RequestOutcome& outcome)
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
    // What ends the service is told even when it always does.
    if (!common || subject == "crash")
      lines.emplace_back(subject, textIn(outcome).value_or("(nothing)"));
  }
  return lines;
}

std::string listed(const std::vector<std::string>& names)
{
  std::string text;
  for (const std::string& name : names)
    text += (text.empty() ? "" : ", ") + shown(name);
  return text;
}

std::string verdictOf(const GroupReport& report, const Style& style)
{
  std::string text;
  if (!report.differences.empty())
    text = style.bad("the order matters to " + std::to_string(report.differences.size()));
  if (!report.crashes.empty())
    text += (text.empty() ? "" : ", ") + style.bad(std::to_string(report.crashes.size()) + " of them end the service");
  return text.empty() ? style.good("no order matters") : text;
}

void printChange(const GroupOfItems& group, const TriedChange& tried, const Masking& masking)
{
  std::string values;
  for (std::size_t i = 0; i < group.members.size(); ++i)
    values += " " + shown(group.members[i]->rootId) + " " + masking.value(*group.members[i], tried.change[i]);
  std::cout << "  set" << values << "\n";
  for (const Alike& alike : tried.outcomes)
  {
    std::cout << "    " << alike.orders << (alike.orders == 1 ? " order: " : " orders, such as ")
              << listed(namesIn(group, alike.firstOrder)) << "\n";
    for (const auto& [subject, text] : peculiar(tried, alike.outcome))
      std::cout << "      " << shown(subject) << ": " << shown(masked(group, masking, subject, text)) << "\n";
  }
}

Json jsonOf(const GroupOfItems& group, const TriedChange& tried, const Masking& masking)
{
  Json change = Json::object();
  for (std::size_t i = 0; i < group.members.size(); ++i)
    change[group.members[i]->rootId] =
        masking.isSecret(*group.members[i]) ? std::string(Masking::mask) : tried.change[i];
  Json outcomes = Json::array();
  for (const Alike& alike : tried.outcomes)
  {
    Json outcome = Json::object();
    for (const auto& [subject, text] : alike.outcome)
      outcome[subject] = masked(group, masking, subject, text);
    outcomes.push_back({{"orders", alike.orders}, {"order", namesIn(group, alike.firstOrder)}, {"outcome", outcome}});
  }
  return {{"change", change}, {"outcomes", outcomes}};
}

Json jsonOf(const GroupOfItems& group, const std::vector<TriedChange>& changes, const Masking& masking)
{
  Json list = Json::array();
  for (const TriedChange& tried : changes)
    list.push_back(jsonOf(group, tried, masking));
  return list;
}

} // namespace

GroupReport tryGroup(const PermutationTrial& trial, const GroupOfItems& group, const std::vector<GroupChange>& changes,
                     Progress& progress)
{
  GroupReport report{&group, changes.size(), ordersOf(group.members.size()).size(), {}, {}};
  const std::string all = counted(report.changes * report.orders, "request");
  std::size_t number = 0;
  const auto step = [&] { progress.tell(shown(group.name) + ": " + std::to_string(++number) + " of " + all); };
  for (const GroupChange& change : changes)
  {
    TriedChange tried = {change, tryChange(trial, group, change, step)};
    if (std::any_of(tried.outcomes.begin(), tried.outcomes.end(), endsTheService))
      report.crashes.push_back(std::move(tried));
    else if (tried.outcomes.size() > 1)
      report.differences.push_back(std::move(tried));
  }
  return report;
}

void printReport(const GroupReport& report, const Masking& masking, const Style& style)
{
  const GroupOfItems& group = *report.group;
  std::cout << style.strong(shown(group.name)) << ": " << counted(group.members.size(), "item") << ", "
            << counted(report.changes, "change") << " in " << counted(report.orders, "order") << ": "
            << verdictOf(report, style) << "\n";
  for (const auto* changes : {&report.differences, &report.crashes})
  {
    for (const TriedChange& tried : *changes)
      printChange(group, tried, masking);
  }
}

nlohmann::ordered_json jsonOf(const GroupReport& report, const Masking& masking)
{
  const GroupOfItems& group = *report.group;
  return {{"group", group.name},
          {"items", namesIn(group, ordersOf(group.members.size()).front())},
          {"changes", report.changes},
          {"orders", report.orders},
          {"differences", jsonOf(group, report.differences, masking)},
          {"crashes", jsonOf(group, report.crashes, masking)}};
}

std::vector<std::string> namesIn(const GroupOfItems& group, const std::vector<std::size_t>& order)
{
  std::vector<std::string> names;
  names.reserve(order.size());
  for (const std::size_t place : order)
    names.push_back(group.members[place]->rootId);
  return names;
}

} // namespace cli::groups
