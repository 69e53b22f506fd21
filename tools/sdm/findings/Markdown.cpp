// Findings as Markdown. Whoever wrote a map has no say in what a comment looks like, whom it calls and where it links:
// all that comes from a map stands in code spans.
#include <algorithm>

#include "Formats.h"
#include "base/Shown.h"

namespace cli::findings
{
namespace
{

std::size_t longestRun(const std::string& text, char of)
{
  std::size_t longest = 0;
  std::size_t run = 0;
  for (const char c : text)
  {
    run = c == of ? run + 1 : 0;
    longest = std::max(longest, run);
  }
  return longest;
}

/// A code span, which a longer row of backticks than any within it fences in. The text has no line ends.
std::string code(const std::string& text)
{
  const std::string fence(longestRun(text, '`') + 1, '`');
  const bool touches = text.empty() || text.front() == '`' || text.back() == '`';
  const std::string gap = touches ? " " : "";
  return fence + gap + text + gap + fence;
}

std::string placeText(const Place& place)
{
  return shown(place.path) + ":" + std::to_string(place.begin.line);
}

void tellFinding(std::ostream& out, const Report& report, const Finding& finding)
{
  const RuleText& rule = report.rules[finding.rule];
  out << "- **" << severityName(rule.severity) << "** " << code(finding.text) << " [" << rule.id << "]\n  - at "
      << code(placeText(finding.place)) << "\n";
  for (const Related& related : finding.related)
    out << "  - " << code(related.text) << " at " << code(placeText(related.place)) << "\n";
  for (const auto& [title, effect] : finding.effects)
    out << "  - " << title << ": " << effect << "\n";
}

} // namespace

void tellMarkdown(std::ostream& out, const Report& report)
{
  out << "### " << report.tool << "\n\n";
  for (const Failure& failure : report.failures)
    out << "**Failed:** " << code(shown(failure.text)) << "\n\n";
  if (report.findings.empty())
  {
    out << (report.failures.empty() ? "Nothing to tell.\n" : "");
    return;
  }
  out << countsText(report) << "\n\n";
  for (const Finding& finding : report.findings)
    tellFinding(out, report, finding);
}

} // namespace cli::findings
