// The history of one item as it is told.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "Style.h"
#include "explain/History.h"

namespace cli
{

/// The event among those of one item that gave the value that the service had in the last of their runs; nothing when
/// none is known. A start begins with nothing, so what an earlier run did counts no more.
std::optional<HistoryEvent> lastLiveEvent(const std::vector<HistoryEvent>& events);

/// For people: where the value came from, which `live` tells, then all events in order.
void printExplanation(std::ostream& out, const Style& style, const std::string& rootId,
                      const std::vector<HistoryEvent>& events, const std::optional<HistoryEvent>& live);

/// For programs: one JSON document.
void printExplanationAsJson(std::ostream& out, const std::string& rootId, const std::vector<HistoryEvent>& events,
                            const std::optional<HistoryEvent>& live);

} // namespace cli
