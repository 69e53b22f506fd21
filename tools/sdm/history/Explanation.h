// The history of one item as it is told.
#pragma once

#include <optional>
#include <ostream>
#include <string>

#include "HistoryEvent.h"
#include "base/Style.h"

namespace cli
{

/// The event that gave the value that the service had in the last run that anything is known of; nothing when none is
/// known. A start begins with nothing, so what an earlier run did counts no more.
std::optional<HistoryEvent> lastLiveEvent(const ItemHistory& history);

/// That events were dropped, how many, and when the last of them happened.
std::string droppedText(const ItemHistory& history);

/// For people: where the value came from, which `live` tells, then all events in order.
void printExplanation(std::ostream& out, const Style& style, const std::string& rootId, const ItemHistory& history,
                      const std::optional<HistoryEvent>& live);

/// For programs: one JSON document.
void printExplanationAsJson(std::ostream& out, const std::string& rootId, const ItemHistory& history,
                            const std::optional<HistoryEvent>& live);

} // namespace cli
