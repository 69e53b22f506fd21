// Compares what a start gave each item with what the start before gave it; only what differs is written.
#include "StartNews.h"

#include <algorithm>
#include <array>
#include <sodium.h>
#include <utility>

#include "History.h"
#include "HistoryLines.h"

namespace cli
{
namespace
{

/// What of an event is news when it is another than at the start before.
std::vector<std::string> essence(const HistoryEvent& event)
{
  return {event.rootId, event.origin, event.outcome,
          event.value,  event.reason, event.request == 0 ? "" : std::to_string(event.request - event.requestsBefore)};
}

bool isSame(const std::vector<HistoryEvent>& left, const std::vector<HistoryEvent>& right)
{
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](const HistoryEvent& a, const HistoryEvent& b) { return essence(a) == essence(b); });
}

HistoryEvent nothingGiven(const std::string& rootId)
{
  HistoryEvent event;
  event.time = historyTime();
  event.rootId = rootId;
  event.origin = origin::start;
  event.outcome = outcome::nothing;
  return event;
}

} // namespace

std::string digestOf(const std::vector<HistoryEvent>& given)
{
  crypto_generichash_state state;
  std::array<unsigned char, crypto_generichash_BYTES_MIN> digest{};
  crypto_generichash_init(&state, nullptr, 0, digest.size());
  for (const HistoryEvent& event : given)
  {
    for (const std::string& part : essence(event))
    {
      const std::string text = std::to_string(part.size()) + ":" + part;
      crypto_generichash_update(&state, reinterpret_cast<const unsigned char*>(text.data()), text.size());
    }
  }
  crypto_generichash_final(&state, digest.data(), digest.size());
  std::array<char, 2 * crypto_generichash_BYTES_MIN + 1> text{};
  sodium_bin2hex(text.data(), text.size(), digest.data(), digest.size());
  return text.data();
}

void StartNews::take(std::string_view line)
{
  const HistoryLine parsed = parsedHistoryLine(line);
  const auto* event = std::get_if<HistoryEvent>(&parsed);
  if (event == nullptr || event->start == 0)
    return;
  std::vector<HistoryEvent>& known = before[event->rootId];
  if (!known.empty() && (known.back().start != event->start || known.back().run != event->run))
    known.clear();
  known.push_back(*event);
}

std::vector<HistoryEvent> StartNews::in(const std::vector<HistoryEvent>& given, bool anew) const
{
  std::map<std::string, std::vector<HistoryEvent>> now;
  for (const HistoryEvent& event : given)
    now[event.rootId].push_back(event);
  std::vector<HistoryEvent> news;
  for (const HistoryEvent& event : given)
  {
    const auto known = before.find(event.rootId);
    if (known == before.end() || !isSame(known->second, now[event.rootId]))
      news.push_back(event);
  }
  for (const auto& [rootId, known] : before)
  {
    if (anew && now.count(rootId) == 0 && known.back().outcome != outcome::nothing)
      news.push_back(nothingGiven(rootId));
  }
  return news;
}

} // namespace cli
