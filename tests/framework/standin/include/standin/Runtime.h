// The framework as a service finds it at its start: its context, and what the stand-in lets a test see.
#pragma once

#include <SvcRTEContext.h>

#include <string>
#include <vector>

namespace standin
{
SvcRTEContext& context();

/// The update requests that the database took, in order.
const std::vector<std::string>& updates();

/// Root ids that the store was asked to report changes of.
const std::vector<std::string>& subscriptions();

/// Records of the security log.
const std::vector<std::string>& securityRecords();

/// Lines of the log, each as it was formatted.
std::vector<std::string> logLines();
} // namespace standin
