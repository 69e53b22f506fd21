// Results as servers for continuous integration read them: JUnit's XML.
#include <iomanip>
#include <ostream>
#include <pugixml.hpp>
#include <sstream>

#include "Suite.h"
#include "base/Shown.h"

namespace cli::test
{
namespace
{

std::string seconds(std::chrono::duration<double> duration)
{
  std::ostringstream text;
  text << std::fixed << std::setprecision(3) << duration.count();
  return text.str();
}

/// What XML cannot carry is escaped by `shown`.
std::string detailsOf(const Result& result)
{
  if (!result.difference)
    return shown(result.failure);
  std::string text;
  for (const std::string& line : result.difference->before)
    text += "  " + shown(line) + "\n";
  text += "- " + shown(result.difference->expected) + "\n+ " + shown(result.difference->actual) + "\n";
  for (const std::string& note : result.notes)
    text += note + "\n";
  return text;
}

void addCase(pugi::xml_node& suite, const Result& result)
{
  pugi::xml_node testCase = suite.append_child("testcase");
  testCase.append_attribute("name") = shown(result.name).c_str();
  testCase.append_attribute("classname") = "sdm.transcripts";
  testCase.append_attribute("time") = seconds(result.duration).c_str();
  if (result.passed())
    return;
  pugi::xml_node failure = testCase.append_child(result.failure.empty() ? "failure" : "error");
  failure.append_attribute("message") = shown(messageOf(result)).c_str();
  failure.text() = detailsOf(result).c_str();
}

} // namespace

void tellJUnit(std::ostream& out, const Told& told, bool listsCoverage)
{
  unsigned failures = 0;
  unsigned errors = 0;
  std::chrono::duration<double> duration{0};
  for (const Result& result : told.results)
  {
    failures += result.difference ? 1U : 0U;
    errors += result.failure.empty() ? 0U : 1U;
    duration += result.duration;
  }
  pugi::xml_document document;
  pugi::xml_node suite = document.append_child("testsuites").append_child("testsuite");
  suite.append_attribute("name") = shown(told.folder.string()).c_str();
  suite.append_attribute("tests") = static_cast<unsigned>(told.results.size());
  suite.append_attribute("failures") = failures;
  suite.append_attribute("errors") = errors;
  suite.append_attribute("time") = seconds(duration).c_str();
  for (const Result& result : told.results)
    addCase(suite, result);
  std::ostringstream coverage;
  tellTapCoverage(coverage, told.coverage, listsCoverage);
  suite.append_child("system-out").text() = coverage.str().c_str();
  document.save(out, "  ");
}

} // namespace cli::test
