// Compares what a start gave with what the start before gave.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "HistoryEvent.h"

namespace cli
{

/// Equal for starts that gave the same: items, origins, outcomes, values, reasons and requests, in order. Of values as
/// the events have them, so nothing can be learnt from it of a secret.
std::string digestOf(const std::vector<HistoryEvent>& given);

/// Takes the lines of a history in their order.
class StartNews
{
public:
  void take(std::string_view line);

  /// The events of the items that got something else. When the start began anew, one as well for each item that got
  /// something before and nothing now.
  std::vector<HistoryEvent> in(const std::vector<HistoryEvent>& given, bool anew) const;

private:
  /// By item, what the last start gave that has events of it.
  std::map<std::string, std::vector<HistoryEvent>> before;
};

} // namespace cli
