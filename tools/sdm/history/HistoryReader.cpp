// Reads line after line and keeps those of one item.
#include "HistoryReader.h"

#include <utility>

namespace cli
{

HistoryReader::HistoryReader(std::string itsRootId) : rootId(std::move(itsRootId))
{
}

void HistoryReader::take(std::string_view line)
{
  if (!mayTellOf(line, rootId))
    return;
  const HistoryLine parsed = parsedHistoryLine(line);
  if (const auto* event = std::get_if<HistoryEvent>(&parsed))
    take(*event);
  else if (const auto* mark = std::get_if<StartMark>(&parsed))
    take(*mark);
  else if (const auto* dropped = std::get_if<DroppedEvents>(&parsed))
    take(*dropped);
}

void HistoryReader::take(const HistoryEvent& event)
{
  found.run = event.run;
  if (event.rootId != rootId)
    return;
  found.events.push_back(event);
  if (event.start == 0)
    return;
  if (given.empty() || given.back().start != event.start || given.back().run != event.run)
    given.clear();
  given.push_back(event);
}

void HistoryReader::take(const StartMark& mark)
{
  found.run = mark.run;
  last = {mark, found.events.size()};
  if (mark.anew)
    lastAnew = last;
}

void HistoryReader::take(const DroppedEvents& dropped)
{
  const auto own = dropped.counts.find(rootId);
  const auto nobodys = dropped.counts.find("");
  const auto counted = own != dropped.counts.end() ? own : nobodys;
  if (counted == dropped.counts.end())
    return;
  found.dropped += counted->second;
  found.droppedUntil = dropped.until;
}

/// The local store is asked when a service begins only.
const HistoryReader::Place& HistoryReader::lastThatGave() const
{
  return !given.empty() && given.front().origin == origin::localStore ? lastAnew : last;
}

/// What that start gave, when it was no news and so is not in the file.
std::vector<HistoryEvent> HistoryReader::repeated(const StartMark& mark) const
{
  if (given.empty() || given.back().start >= mark.number || given.back().outcome == outcome::nothing)
    return {};
  std::vector<HistoryEvent> events = given;
  for (HistoryEvent& event : events)
  {
    // Requests are counted from the begin of a run.
    if (event.request != 0)
      event.request = event.request - event.requestsBefore + mark.requestsBefore;
    event.time = mark.time;
    event.run = mark.run;
    event.start = mark.number;
    event.requestsBefore = mark.requestsBefore;
  }
  if (events.front().origin != origin::localStore)
    events.front().sameStartsBefore = mark.number - given.back().start - 1;
  return events;
}

ItemHistory HistoryReader::told()
{
  const Place& start = lastThatGave();
  const std::vector<HistoryEvent> events = repeated(start.mark);
  found.events.insert(found.events.begin() + static_cast<std::ptrdiff_t>(start.place), events.begin(), events.end());
  return std::move(found);
}

} // namespace cli
