// All transcripts of a folder, and what became of them.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Coverage.h"
#include "replay/Verdict.h"

namespace cli::test
{

struct Result
{
  /// Of the file, without its folder.
  std::string name;
  /// Why the transcript could not be read or run to its end; empty when it was.
  std::string failure;
  bool readable = false;
  /// Whether a device was brought up for it.
  bool ran = false;
  std::optional<replay::Difference> difference;
  std::vector<std::string> notes;
  std::chrono::duration<double> duration{0};

  bool passed() const
  {
    return failure.empty() && !difference;
  }
};

/// The files of a folder whose names end in ".jsonl", by their names. Throws `StartError` when the folder cannot be
/// read, or has none.
std::vector<std::filesystem::path> transcriptsIn(const std::filesystem::path& folder);

/// Runs one, and notes in `coverage` what it reached. Whatever is thrown meanwhile is the failure of this one alone.
Result runTranscript(const std::filesystem::path& file, const replay::ReplaySettings& settings, Coverage& coverage,
                     Progress& progress);

/// Why a device was brought up for none of those that could be read; empty when it was for one, or none could be read.
std::string whyNothingRan(const std::vector<Result>& results);

/// What is wrong, in a sentence; empty for what passed.
std::string messageOf(const Result& result);

/// Writers of results.
struct Told
{
  std::filesystem::path folder;
  std::vector<Result> results;
  CoverageReport coverage;
};

void tellTapPlan(std::ostream& out, std::size_t tests);
void tellTap(std::ostream& out, std::size_t number, const Result& result);
/// Lists what never ran when `lists`, counts otherwise.
void tellTapCoverage(std::ostream& out, const CoverageReport& coverage, bool lists);
void tellJUnit(std::ostream& out, const Told& told, bool listsCoverage);
void tellJson(std::ostream& out, const Told& told);

} // namespace cli::test
