// What the operator is told about a start of the service.
#pragma once

#include <string>

#include "Session.h"

namespace cli
{

/// Prints what a start did, what it could not do included.
void printStart(Session& session, const StartSummary& summary, const std::string& headline);

} // namespace cli
