// The lines of a history's file: an event, a start of the service, or what is told there no more.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <variant>

#include "HistoryEvent.h"

namespace cli
{

/// A start of the service that is over; its events stand above it. Of items without events there it gave what the
/// start before gave.
struct StartMark
{
  /// Counts the starts of the device from 1.
  std::uint64_t number = 0;
  /// When it ended, as events have it, and the run that it belongs to.
  std::string time;
  std::string run;
  /// How many requests the run had sent before it.
  std::uint64_t requestsBefore = 0;
  /// Whether the service began with nothing; otherwise it kept what no start gives again.
  bool anew = true;
  /// Of all that it gave; equal for starts that gave the same.
  std::string digest;
};

/// Events that were taken out so that the file stays small.
struct DroppedEvents
{
  /// How many, by item; those of items that nothing else is told of are counted under an empty name.
  std::map<std::string, std::size_t> counts;
  /// When the last of them happened.
  std::string until;
};

/// Nothing for a line that a power cut left unfinished, or somebody else wrote.
using HistoryLine = std::variant<std::monostate, HistoryEvent, StartMark, DroppedEvents>;

/// `content` is a line without its end.
HistoryLine parsedHistoryLine(std::string_view content);

/// With its line end. What is no UTF-8 is replaced.
std::string lineOf(const HistoryEvent& event);
std::string lineOf(const StartMark& mark);
std::string lineOf(const DroppedEvents& dropped);

/// Whether the line may tell of the item: a quick look, so that the others need not be parsed.
bool mayTellOf(std::string_view line, const std::string& rootId);

} // namespace cli
