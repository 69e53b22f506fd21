// What the operator is told about a start of the service.
#pragma once

#include <string>

#include "Session.h"

namespace cli
{

/// Prints what a start did, what it could not do included.
void printStart(Session& session, const StartSummary& summary, const std::string& headline);

/// Whether something failed in a start, refusals by the service apart, which `printStart` notes.
bool failed(const StartSummary& summary);

/// One line about map lines that may turn encryption off by mistake; empty when there are none.
std::string encryptionWarning(const RunningDevice& running);

} // namespace cli
