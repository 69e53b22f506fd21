// One name for each severity.
#include "Severity.h"

namespace cli
{

const char* severityName(Severity severity)
{
  switch (severity)
  {
  case Severity::error:
    return "error";
  case Severity::warning:
    return "warning";
  case Severity::note:
    break;
  }
  return "note";
}

std::string coloured(const Style& style, Severity severity, const std::string& text)
{
  switch (severity)
  {
  case Severity::error:
    return style.bad(text);
  case Severity::warning:
    return style.notable(text);
  case Severity::note:
    break;
  }
  return style.faint(text);
}

} // namespace cli
