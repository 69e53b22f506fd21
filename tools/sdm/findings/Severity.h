// How much a finding matters.
#pragma once

#include <string>

#include "base/Style.h"

namespace cli
{

/// The worst first.
enum class Severity
{
  error,   ///< something does not work, or a stored value is lost
  warning, ///< something is probably not meant, or a device behaves otherwise
  note     ///< good to know
};

/// "error", "warning", "note".
const char* severityName(Severity severity);

/// The text in the colour of the severity.
std::string coloured(const Style& style, Severity severity, const std::string& text);

} // namespace cli
