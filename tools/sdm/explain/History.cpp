#include "explain/History.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <unistd.h>

#include "Descriptor.h"
#include "StartError.h"

namespace cli
{
namespace
{

using Json = nlohmann::ordered_json;

constexpr const char* fileName = "history.log";

// A start tells of every item, so some ten starts of a large map fit.
constexpr std::uintmax_t mostBytes = 2UL * 1024 * 1024;
constexpr std::size_t keptOfEach = 8;

std::string lineOf(const HistoryEvent& event)
{
  Json line = {{"time", event.time},     {"run", event.run},         {"item", event.rootId},
               {"origin", event.origin}, {"outcome", event.outcome}, {"value", event.value}};
  if (!event.reason.empty())
    line["reason"] = event.reason;
  if (event.request != 0)
    line["request"] = event.request;
  return line.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

/// False for a line that a power cut left unfinished, or somebody else wrote.
bool readLine(const std::string& text, HistoryEvent& event)
{
  const Json line = Json::parse(text, nullptr, false);
  if (!line.is_object())
    return false;
  const auto field = [&](const char* name)
  {
    const auto found = line.find(name);
    return found != line.end() && found->is_string() ? found->get<std::string>() : std::string();
  };
  event = {field("time"),    field("run"),   field("item"),   field("origin"),
           field("outcome"), field("value"), field("reason"), 0};
  const auto request = line.find("request");
  if (request != line.end() && request->is_number_unsigned())
    event.request = request->get<std::uint64_t>();
  return !event.rootId.empty() && !event.outcome.empty();
}

std::vector<HistoryEvent> eventsIn(std::istream& input)
{
  std::vector<HistoryEvent> events;
  HistoryEvent event;
  for (std::string line; std::getline(input, line);)
  {
    if (readLine(line, event))
      events.push_back(event);
  }
  return events;
}

/// Values stand in it, so a new file is its owner's alone. The first line begins anew, whatever the last one lacks.
bool append(const std::filesystem::path& file, const std::string& text, int flags)
{
  const Descriptor opened(::open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | flags, S_IRUSR | S_IWUSR));
  return opened.number >= 0 && writeAll(opened.number, text);
}

} // namespace

std::string historyTime()
{
  const auto now = std::chrono::system_clock::now();
  const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
  const auto rest = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
  std::tm parts = {};
  ::gmtime_r(&seconds, &parts);
  std::array<char, 64> text{};
  const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &parts);
  std::snprintf(text.data() + length, text.size() - length, ".%03dZ", static_cast<int>(rest));
  return text.data();
}

History::History(const std::filesystem::path& deviceFolder) : file(deviceFolder / fileName)
{
  std::ifstream input(file, std::ios::binary);
  if (!input)
    return;
  events = eventsIn(input);
  std::error_code unknown;
  const std::uintmax_t size = std::filesystem::file_size(file, unknown);
  if (!unknown && size > mostBytes)
    compact();
  else if (size > 0 && !unknown)
    append(file, "\n", O_APPEND);
}

std::vector<HistoryEvent> History::read(const std::filesystem::path& deviceFolder)
{
  const std::filesystem::path file = deviceFolder / fileName;
  std::ifstream input(file, std::ios::binary);
  if (!input)
    throw StartError(file.string() + " cannot be read: " + std::strerror(errno) +
                     "; `sdm run` writes it, name the folder of its device with --device");
  return eventsIn(input);
}

void History::compact()
{
  std::map<std::string, std::size_t> counts;
  std::vector<HistoryEvent> kept;
  for (auto event = events.rbegin(); event != events.rend(); ++event)
  {
    if (++counts[event->rootId] <= keptOfEach)
      kept.push_back(*event);
  }
  std::reverse(kept.begin(), kept.end());
  std::string text;
  for (const HistoryEvent& event : kept)
    text += lineOf(event);
  const std::filesystem::path draft = file.string() + ".new";
  std::error_code failed;
  if (append(draft, text, O_TRUNC))
    std::filesystem::rename(draft, file, failed);
  events = std::move(kept);
}

void History::add(const std::vector<HistoryEvent>& more)
{
  const std::lock_guard<std::mutex> hold(mutex);
  std::string text;
  for (const HistoryEvent& event : more)
  {
    text += lineOf(event);
    events.push_back(event);
    if (event.isLive())
      alive[event.rootId] = event;
  }
  if (!text.empty() && !append(file, text, O_APPEND))
    trouble = file.string() + " cannot be written: " + std::strerror(errno);
}

std::vector<HistoryEvent> History::of(const std::string& rootId) const
{
  const std::lock_guard<std::mutex> hold(mutex);
  std::vector<HistoryEvent> found;
  std::copy_if(events.begin(), events.end(), std::back_inserter(found),
               [&](const HistoryEvent& event) { return event.rootId == rootId; });
  return found;
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
}

std::string History::problem() const
{
  const std::lock_guard<std::mutex> hold(mutex);
  return trouble;
}

} // namespace cli
