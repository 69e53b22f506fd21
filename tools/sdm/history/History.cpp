// A file of lines that is added to; a line that is none of a history is passed over.
#include "History.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <set>
#include <utility>

#include "HistoryCompaction.h"
#include "HistoryReader.h"
#include "StartNews.h"
#include "base/StartError.h"
#include "host/IsoTime.h"

namespace cli
{
namespace
{

constexpr std::size_t mostBytes = 2UL * 1024 * 1024;
constexpr std::size_t bytesAfterwards = mostBytes / 2;
constexpr std::size_t mostUnwritten = 1024UL * 1024;
constexpr std::size_t longestText = 4096;
constexpr std::string_view startBeginning = R"({"start":)";

void cutShort(std::string& text)
{
  if (text.size() <= longestText)
    return;
  std::size_t end = longestText;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
    --end;
  text = text.substr(0, end) + "... (" + std::to_string(text.size()) + " bytes)";
}

HistoryEvent cutShort(HistoryEvent event)
{
  cutShort(event.value);
  cutShort(event.reason);
  return event;
}

[[noreturn]] void throwUnreadable(const HistoryFile& file, int reason)
{
  throw StartError(file.path().string() + " cannot be read: " + HistoryFile::wordsOf(reason) +
                   "; `sdm run` writes it, name the folder of its device with --device");
}

} // namespace

std::string historyTime()
{
  return host::isoTime(std::chrono::system_clock::now());
}

History::History(const std::filesystem::path& deviceFolder) : file(deviceFolder)
{
}

ItemHistory History::read(const std::filesystem::path& deviceFolder, const std::string& rootId)
{
  const HistoryFile file(deviceFolder);
  HistoryReader reader(rootId);
  if (const int reason = file.read([&](std::string_view line) { reader.take(line); }); reason != 0)
    throwUnreadable(file, reason);
  return reader.told();
}

std::vector<std::string> History::knownIds(const std::filesystem::path& deviceFolder)
{
  const HistoryFile file(deviceFolder);
  std::set<std::string> ids;
  const auto take = [&](std::string_view line)
  {
    const HistoryLine parsed = parsedHistoryLine(line);
    if (const auto* event = std::get_if<HistoryEvent>(&parsed))
      ids.insert(event->rootId);
  };
  if (const int reason = file.read(take); reason != 0)
    throwUnreadable(file, reason);
  return {ids.begin(), ids.end()};
}

void History::add(const std::vector<HistoryEvent>& more)
{
  const std::lock_guard<std::mutex> hold(mutex);
  std::string text;
  for (const HistoryEvent& event : more)
    text += lineOf(cutShort(event));
  write(text);
  keepAlive(more);
}

void History::addStart(std::vector<HistoryEvent> given, StartMark start)
{
  const std::lock_guard<std::mutex> hold(mutex);
  for (HistoryEvent& event : given)
  {
    event = cutShort(std::move(event));
    event.requestsBefore = start.requestsBefore;
  }
  const std::optional<StartMark> before = lastStart();
  start.number = before ? before->number + 1 : 1;
  start.time = historyTime();
  start.digest = digestOf(given);
  start.anew = std::exchange(anew, false);
  std::string text;
  std::set<std::string> told;
  if (!before || before->digest != start.digest)
  {
    StartNews news;
    readAll([&](std::string_view line) { news.take(line); });
    for (HistoryEvent& event : news.in(given, start.anew))
    {
      event.run = start.run;
      event.start = start.number;
      text += lineOf(event);
      told.insert(event.rootId);
    }
  }
  // Last: when the lines above are not all there, nothing says that they are.
  write(text + lineOf(start));
  // What is no news has the time of the start, as who reads the file has it.
  for (HistoryEvent& event : given)
  {
    if (told.count(event.rootId) == 0)
      event.time = start.time;
  }
  keepAlive(given);
}

void History::keepAlive(const std::vector<HistoryEvent>& more)
{
  for (const HistoryEvent& event : more)
  {
    if (event.isLive())
      alive[event.rootId] = event;
  }
}

std::optional<StartMark> History::lastStart() const
{
  std::string line = file.lastLineWith(std::string(startBeginning));
  eachLine(unwritten,
           [&](std::string_view each)
           {
             if (each.substr(0, startBeginning.size()) == startBeginning)
               line = each;
           });
  const HistoryLine parsed = parsedHistoryLine(line);
  const auto* mark = std::get_if<StartMark>(&parsed);
  return mark == nullptr ? std::nullopt : std::optional<StartMark>(*mark);
}

void History::write(const std::string& text)
{
  if (text.empty())
    return;
  std::size_t size = 0;
  const int reason = file.append(unwritten + text, size);
  if (reason != 0)
  {
    trouble = file.path().string() + " cannot be written: " + HistoryFile::wordsOf(reason);
    keepHere(text);
    return;
  }
  trouble.clear();
  unwritten.clear();
  if (size > mostBytes)
    compact();
}

void History::keepHere(const std::string& text)
{
  unwritten += text;
  if (unwritten.size() <= mostUnwritten)
    return;
  HistoryCompaction compaction;
  eachLine(unwritten, [&](std::string_view line) { compaction.take(line); });
  unwritten = compaction.kept(mostUnwritten / 2);
}

void History::compact()
{
  HistoryCompaction compaction;
  if (readAll([&](std::string_view line) { compaction.take(line); }) == 0)
    file.replace(compaction.kept(bytesAfterwards));
}

int History::readAll(const LineTaker& take) const
{
  const int reason = file.read(take);
  eachLine(unwritten, take);
  return reason;
}

ItemHistory History::of(const std::string& rootId) const
{
  const std::lock_guard<std::mutex> hold(mutex);
  HistoryReader reader(rootId);
  readAll([&](std::string_view line) { reader.take(line); });
  return reader.told();
}

std::optional<HistoryEvent> History::live(const std::string& rootId) const
{
  const std::lock_guard<std::mutex> hold(mutex);
  const auto found = alive.find(rootId);
  return found == alive.end() ? std::nullopt : std::optional<HistoryEvent>(found->second);
}

void History::forgetLive()
{
  const std::lock_guard<std::mutex> hold(mutex);
  alive.clear();
  anew = true;
}

std::string History::problem() const
{
  const std::lock_guard<std::mutex> hold(mutex);
  return trouble;
}

} // namespace cli
