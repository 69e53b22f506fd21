// Findings for the pages on which changes are reviewed: GitLab's code quality, and GitHub's annotations.
#include "Formats.h"
#include "base/Shown.h"

namespace cli::findings
{
namespace
{

const char* gitlabSeverity(Severity severity)
{
  switch (severity)
  {
  case Severity::error:
    return "critical";
  case Severity::warning:
    return "minor";
  case Severity::note:
    break;
  }
  return "info";
}

std::string withEffects(const Finding& finding, const char* between)
{
  return finding.text + effectsText(finding, between, "");
}

/// A text of a workflow command; in a property a colon and a comma have a meaning as well.
std::string commandText(const std::string& text, bool isProperty)
{
  std::string made;
  for (const char c : text)
  {
    const bool special = c == '%' || c == '\r' || c == '\n' || (isProperty && (c == ':' || c == ','));
    const char* const code = c == '%' ? "%25" : c == '\r' ? "%0D" : c == '\n' ? "%0A" : c == ':' ? "%3A" : "%2C";
    made += special ? std::string(code) : std::string(1, c);
  }
  return made;
}

} // namespace

void tellGitlab(std::ostream& out, const Report& report)
{
  Json all = Json::array();
  for (const Failure& failure : report.failures)
    all.push_back({{"description", failure.text},
                   {"check_name", "failure"},
                   {"fingerprint", fingerprintOf({"failure", failure.path})},
                   {"severity", "blocker"},
                   {"location", {{"path", failure.path}, {"lines", {{"begin", 1}}}}}});
  for (const Finding& finding : report.findings)
    all.push_back({{"description", withEffects(finding, "; ")},
                   {"check_name", report.rules[finding.rule].id},
                   {"fingerprint", finding.fingerprint},
                   {"severity", gitlabSeverity(report.severityOf(finding))},
                   {"location",
                    {{"path", finding.place.path},
                     {"lines", {{"begin", finding.place.begin.line}, {"end", finding.place.end.line}}}}}});
  write(out, all);
}

void tellGithub(std::ostream& out, const Report& report)
{
  const auto property = [](const std::string& text) { return commandText(shown(text), true); };
  for (const Failure& failure : report.failures)
    out << "::error file=" << property(failure.path) << ",title=" << property(report.tool)
        << "::" << commandText(shown(failure.text), false) << "\n";
  for (const Finding& finding : report.findings)
  {
    const Severity severity = report.severityOf(finding);
    out << "::" << (severity == Severity::note ? "notice" : severityName(severity))
        << " file=" << property(finding.place.path) << ",line=" << finding.place.begin.line
        << ",endLine=" << finding.place.end.line << ",col=" << finding.place.begin.column
        << ",endColumn=" << finding.place.end.column << ",title=" << property(report.rules[finding.rule].id)
        << "::" << commandText(withEffects(finding, "\n"), false) << "\n";
  }
}

} // namespace cli::findings
