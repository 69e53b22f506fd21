// Results in the Test Anything Protocol, version 13.
#include <ostream>

#include "Suite.h"
#include "base/JsonText.h"
#include "base/Shown.h"

namespace cli::test
{
namespace
{

/// Texts of JSON are texts of YAML.
std::string quoted(const std::string& text)
{
  return shownJson(jsonText(nlohmann::json(text)));
}

/// A # would begin a directive.
std::string description(const std::string& name)
{
  std::string text = shown(name);
  for (std::size_t at = text.find('#'); at != std::string::npos; at = text.find('#', at + 2))
    text.insert(at, "\\");
  return text;
}

} // namespace

void tellTapPlan(std::ostream& out, std::size_t tests)
{
  out << "TAP version 13\n1.." << tests << "\n";
}

void tellTap(std::ostream& out, std::size_t number, const Result& result)
{
  out << (result.passed() ? "ok " : "not ok ") << number << " - " << description(result.name) << "\n";
  if (result.passed())
    return;
  out << "  ---\n  message: " << quoted(messageOf(result)) << "\n";
  if (result.difference)
  {
    out << "  line: " << result.difference->line
        << "\n  before:" << (result.difference->before.empty() ? " []\n" : "\n");
    for (const std::string& line : result.difference->before)
      out << "    - " << quoted(line) << "\n";
    out << "  expected: " << quoted(result.difference->expected) << "\n  actual: " << quoted(result.difference->actual)
        << "\n";
  }
  for (const std::string& note : result.notes)
    out << "  note: " << quoted(note) << "\n";
  out << "  ...\n";
}

void tellTapCoverage(std::ostream& out, const CoverageReport& coverage, bool lists)
{
  for (const CoverageOf& each : coverage)
  {
    out << "# " << each.kind << ": " << each.all - each.missing.size() << " of " << each.all << " ran\n";
    if (!lists)
      continue;
    for (const std::string& name : each.missing)
      out << "#   never ran: " << shown(name) << "\n";
  }
}

} // namespace cli::test
