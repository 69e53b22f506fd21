// Makes a history small again.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "HistoryLines.h"

namespace cli
{

/// Takes the lines of a history in their order. Kept are what the last start gave each item and the last events of
/// each, the newest first, as long as there is room; what is dropped is counted, to be told.
class HistoryCompaction
{
public:
  void take(std::string_view line);

  /// The lines that stay, of at most `room` bytes but for the line that tells what was dropped.
  std::string kept(std::size_t room);

private:
  struct Entry
  {
    HistoryEvent event;
    bool isKept = false;
  };

  bool isOfLastStart(const HistoryEvent& event) const;
  /// Those of last starts, or the others; the newest first.
  void keep(bool ofLastStarts, std::size_t& room);
  void noteMark(const StartMark& mark);
  void add(const DroppedEvents& earlier);
  void addDropped();

  std::vector<Entry> entries;
  /// The start that gave each item what it has.
  std::map<std::string, std::uint64_t> lastStarts;
  DroppedEvents dropped;
  /// The last start and the last that began anew, each with the place that its line has.
  std::map<std::size_t, StartMark> marks;
};

} // namespace cli
