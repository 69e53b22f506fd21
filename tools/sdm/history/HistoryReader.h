// Finds the events of one item in a history. Starts without a change for it are summed up in one line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "HistoryLines.h"

namespace cli
{

/// Takes the lines of a history in their order.
class HistoryReader
{
public:
  explicit HistoryReader(std::string itsRootId);

  void take(std::string_view line);

  /// What they tell, once all were taken.
  ItemHistory told();

private:
  void take(const HistoryEvent& event);
  void take(const StartMark& mark);
  void take(const DroppedEvents& dropped);
  std::vector<HistoryEvent> repeated(const StartMark& mark) const;

  const std::string rootId;
  ItemHistory found;
  /// What the last start that has events of the item gave it.
  std::vector<HistoryEvent> given;
  /// A start with the place that its events belong to.
  struct Place
  {
    StartMark mark;
    std::size_t place = 0;
  };
  const Place& lastThatGave() const;

  Place last;
  Place lastAnew;
};

} // namespace cli
