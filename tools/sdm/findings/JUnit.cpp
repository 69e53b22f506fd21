// Findings as XML of JUnit, for servers that know nothing but tests.
#include <algorithm>
#include <pugixml.hpp>

#include "Formats.h"
#include "base/Shown.h"

namespace cli::findings
{
namespace
{

pugi::xml_node addCase(pugi::xml_node& suite, const std::string& name, const std::string& path)
{
  pugi::xml_node made = suite.append_child("testcase");
  made.append_attribute("name") = shownAgain(name).c_str();
  made.append_attribute("classname") = shown(path).c_str();
  return made;
}

std::string detailsOf(const Finding& finding)
{
  return shown(finding.place.path) + ":" + std::to_string(finding.place.begin.line) + ":" +
         std::to_string(finding.place.begin.column) + "\n" + effectsText(finding, "", "\n");
}

void addFinding(pugi::xml_node& suite, const Report& report, const Finding& finding)
{
  const RuleText& rule = report.rules[finding.rule];
  pugi::xml_node made = addCase(suite, rule.id + ": " + finding.text, finding.place.path);
  const bool fails = counts(report.failOn, rule.severity);
  pugi::xml_node told = made.append_child(fails ? "failure" : "system-out");
  if (fails)
  {
    told.append_attribute("type") = severityName(rule.severity);
    told.append_attribute("message") = finding.text.c_str();
  }
  told.text() = detailsOf(finding).c_str();
}

/// A file that nothing is said about passed its test.
void addSound(pugi::xml_node& suite, const Report& report, const std::string& path)
{
  const bool found = std::any_of(report.findings.begin(), report.findings.end(),
                                 [&](const Finding& finding) { return finding.place.path == path; });
  const bool failed = std::any_of(report.failures.begin(), report.failures.end(),
                                  [&](const Failure& failure) { return failure.path == path; });
  if (!found && !failed)
    addCase(suite, "no findings", path);
}

} // namespace

void tellJUnit(std::ostream& out, const Report& report)
{
  pugi::xml_document document;
  pugi::xml_node suite = document.append_child("testsuites").append_child("testsuite");
  suite.append_attribute("name") = report.tool.c_str();
  pugi::xml_attribute tests = suite.append_attribute("tests");
  suite.append_attribute("failures") = static_cast<unsigned>(
      std::count_if(report.findings.begin(), report.findings.end(),
                    [&](const Finding& finding) { return counts(report.failOn, report.severityOf(finding)); }));
  suite.append_attribute("errors") = static_cast<unsigned>(report.failures.size());
  for (const Finding& finding : report.findings)
    addFinding(suite, report, finding);
  for (const Failure& failure : report.failures)
    addCase(suite, "can be read", failure.path).append_child("error").append_attribute("message") =
        shown(failure.text).c_str();
  for (const std::string& path : report.paths)
    addSound(suite, report, path);
  const auto cases = suite.children("testcase");
  tests = static_cast<unsigned>(std::distance(cases.begin(), cases.end()));
  document.save(out, "  ");
}

} // namespace cli::findings
