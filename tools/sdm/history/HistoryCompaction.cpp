// Events of the last start are kept first, then the newest of each item, as far as there is room.
#include "HistoryCompaction.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace cli
{
namespace
{

constexpr std::size_t keptOfEach = 8;

} // namespace

void HistoryCompaction::take(std::string_view line)
{
  const HistoryLine parsed = parsedHistoryLine(line);
  if (const auto* event = std::get_if<HistoryEvent>(&parsed))
  {
    entries.push_back({*event});
    if (event->start != 0)
      lastStarts[event->rootId] = event->start;
  }
  else if (const auto* mark = std::get_if<StartMark>(&parsed))
    noteMark(*mark);
  else if (const auto* earlier = std::get_if<DroppedEvents>(&parsed))
    add(*earlier);
}

void HistoryCompaction::noteMark(const StartMark& mark)
{
  for (auto known = marks.begin(); known != marks.end();)
    known = known->second.anew && !mark.anew ? std::next(known) : marks.erase(known);
  marks[entries.size()] = mark;
}

void HistoryCompaction::add(const DroppedEvents& earlier)
{
  for (const auto& [item, count] : earlier.counts)
    dropped.counts[item] += count;
  dropped.until = std::max(dropped.until, earlier.until);
}

bool HistoryCompaction::isOfLastStart(const HistoryEvent& event) const
{
  const auto found = lastStarts.find(event.rootId);
  return event.start != 0 && found->second == event.start;
}

void HistoryCompaction::keep(bool ofLastStarts, std::size_t& room)
{
  std::map<std::string, std::size_t> kept;
  for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry)
  {
    std::size_t& count = kept[entry->event.rootId];
    if (isOfLastStart(entry->event) != ofLastStarts || count == keptOfEach)
      continue;
    const std::size_t size = lineOf(entry->event).size();
    if (size > room)
      return;
    room -= size;
    entry->isKept = true;
    ++count;
  }
}

void HistoryCompaction::addDropped()
{
  std::set<std::string> told;
  for (const Entry& entry : entries)
  {
    if (entry.isKept)
      told.insert(entry.event.rootId);
    if (entry.isKept)
      continue;
    ++dropped.counts[entry.event.rootId];
    dropped.until = std::max(dropped.until, entry.event.time);
  }
  std::map<std::string, std::size_t> counts;
  for (const auto& [item, count] : dropped.counts)
    counts[told.count(item) != 0 ? item : ""] += count;
  dropped.counts = std::move(counts);
}

std::string HistoryCompaction::kept(std::size_t room)
{
  keep(true, room);
  keep(false, room);
  addDropped();
  std::string text = dropped.counts.empty() ? "" : lineOf(dropped);
  for (std::size_t i = 0; i <= entries.size(); ++i)
  {
    if (marks.count(i) != 0)
      text += lineOf(marks[i]);
    if (i < entries.size() && entries[i].isKept)
      text += lineOf(entries[i].event);
  }
  return text;
}

} // namespace cli
