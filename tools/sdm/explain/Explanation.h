// The history of one item as it is told.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "Style.h"
#include "explain/History.h"

namespace cli
{

/// For people: where the value came from, then all events in order.
void printExplanation(std::ostream& out, const Style& style, const std::string& rootId,
                      const std::vector<HistoryEvent>& events);

/// For programs: one JSON document.
void printExplanationAsJson(std::ostream& out, const std::string& rootId, const std::vector<HistoryEvent>& events);

} // namespace cli
