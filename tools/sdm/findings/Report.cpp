// Counts findings, and makes the texts of them that several formats need.
#include "Report.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>

#include "base/Digest.h"
#include "base/Shown.h"

namespace cli::findings
{
namespace
{

constexpr std::size_t fingerprintDigits = 32;

} // namespace

bool counts(FailOn failOn, Severity severity)
{
  return static_cast<int>(severity) <= static_cast<int>(failOn) && failOn != FailOn::never;
}

std::size_t Report::count(Severity severity) const
{
  return static_cast<std::size_t>(std::count_if(
      findings.begin(), findings.end(), [&](const Finding& finding) { return severityOf(finding) == severity; }));
}

bool Report::hasFailing() const
{
  return std::any_of(findings.begin(), findings.end(),
                     [&](const Finding& finding) { return counts(failOn, severityOf(finding)); });
}

std::string effectsText(const Finding& finding, const std::string& before, const std::string& after)
{
  std::string text;
  for (const auto& [title, effect] : finding.effects)
    text.append(before).append(title).append(": ").append(effect).append(after);
  return text;
}

std::string fingerprintOf(const std::vector<std::string>& parts)
{
  // Sizes keep apart what would join to the same text.
  std::string named;
  for (const std::string& part : parts)
    named.append(std::to_string(part.size())).append(":").append(part);
  return sha256Of(named).substr(0, fingerprintDigits);
}

std::string uriOf(const std::string& path)
{
  std::string uri = path.empty() || path.front() != '/' ? "" : "file://";
  for (const char c : path)
  {
    const bool plain = std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '/' || c == '.' || c == '_' || c == '-';
    std::array<char, 4> code{};
    std::snprintf(code.data(), code.size(), "%%%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
    uri += plain ? std::string(1, c) : std::string(code.data());
  }
  return uri;
}

std::string countsText(const Report& report)
{
  return counted(report.count(Severity::error), "error") + ", " + counted(report.count(Severity::warning), "warning") +
         ", " + counted(report.count(Severity::note), "note");
}

} // namespace cli::findings
