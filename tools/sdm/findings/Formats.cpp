// Each format is written from the same findings.
#include "Formats.h"

#include "base/JsonText.h"
#include "base/Shown.h"

namespace cli::findings
{

bool isShared(Format format)
{
  return format != Format::text && format != Format::json;
}

void tell(std::ostream& out, const Report& report, Format format)
{
  switch (format)
  {
  case Format::text:
  case Format::json:
    return;
  case Format::sarif:
    return tellSarif(out, report);
  case Format::markdown:
    return tellMarkdown(out, report);
  case Format::junit:
    return tellJUnit(out, report);
  case Format::gitlab:
    return tellGitlab(out, report);
  case Format::github:
    return tellGithub(out, report);
  }
}

void write(std::ostream& out, const Json& document)
{
  out << shownJson(jsonText(document, 2)) << "\n";
}

} // namespace cli::findings
