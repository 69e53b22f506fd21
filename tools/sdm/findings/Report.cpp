// Counts findings, and makes the texts of them that several formats need.
#include "Report.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <sodium.h>

#include "base/Shown.h"

namespace cli::findings
{

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

std::string fingerprintOf(const std::vector<std::string>& parts)
{
  // Sizes keep apart what would join to the same text.
  std::string named;
  for (const std::string& part : parts)
    named += std::to_string(part.size()) + ":" + part;
  std::array<unsigned char, crypto_hash_sha256_BYTES> digest{};
  crypto_hash_sha256(digest.data(), reinterpret_cast<const unsigned char*>(named.data()), named.size());
  std::array<char, 2 * crypto_hash_sha256_BYTES + 1> text{};
  sodium_bin2hex(text.data(), text.size(), digest.data(), digest.size());
  return std::string(text.data()).substr(0, 32);
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
