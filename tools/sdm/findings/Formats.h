// The forms in which programs take findings.
#pragma once

#include <ostream>

#include "Report.h"

namespace cli::findings
{

enum class Format
{
  text,
  json,
  sarif,
  markdown,
  junit,
  gitlab,
  github
};

/// Whether `tell` has the format. Text and JSON are each subcommand's own.
bool isShared(Format format);

/// The report in a format that all subcommands share.
void tell(std::ostream& out, const Report& report, Format format);

/// SARIF 2.1.0.
void tellSarif(std::ostream& out, const Report& report);
/// Markdown, for a comment on a pull request. All that comes from maps stands in code spans.
void tellMarkdown(std::ostream& out, const Report& report);
/// XML of JUnit: a test case a finding, and one a file without findings. Findings that count as failures fail.
void tellJUnit(std::ostream& out, const Report& report);
/// A code-quality report of GitLab.
void tellGitlab(std::ostream& out, const Report& report);
/// Workflow commands of GitHub, a line a finding.
void tellGithub(std::ostream& out, const Report& report);

/// A document of JSON. What is no UTF-8 is replaced, so that the document stays one.
void write(std::ostream& out, const Json& document);

} // namespace cli::findings
