// Runs one transcript after the other; a file that cannot be read is a failed test.
#include "Suite.h"

#include <algorithm>
#include <system_error>

#include "base/ExceptionText.h"
#include "base/StartError.h"

namespace cli::test
{

std::vector<std::filesystem::path> transcriptsIn(const std::filesystem::path& folder)
{
  std::error_code failure;
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder, failure))
  {
    if (entry.path().extension() == ".jsonl")
      files.push_back(entry.path());
  }
  if (failure)
    throw StartError("the folder " + folder.string() + " cannot be read: " + failure.message());
  if (files.empty())
    throw StartError("the folder " + folder.string() +
                     " has no transcript, that is no file *.jsonl; sdm run --record makes one");
  std::sort(files.begin(), files.end());
  return files;
}

namespace
{

void replayInto(Result& result, const transcript::Transcript& transcript, const replay::ReplaySettings& settings,
                Coverage& coverage, Progress& progress)
{
  const auto began = std::chrono::steady_clock::now();
  replay::Verdict verdict = replay::replayAndCompare(transcript, settings, progress);
  result.duration = std::chrono::steady_clock::now() - began;
  result.ran = true;
  coverage.note(verdict.actual, verdict.map);
  result.difference = std::move(verdict.difference);
  result.notes = std::move(verdict.notes);
}

} // namespace

Result runTranscript(const std::filesystem::path& file, const replay::ReplaySettings& settings, Coverage& coverage,
                     Progress& progress)
{
  Result result;
  result.name = file.filename().string();
  try
  {
    const transcript::Transcript transcript = transcript::readTranscript(file);
    result.readable = true;
    replayInto(result, transcript, settings, coverage, progress);
  }
  catch (const std::exception& error)
  {
    result.failure = exceptionText(error);
  }
  catch (...)
  {
    result.failure = "something that is no std::exception was thrown";
  }
  return result;
}

std::string whyNothingRan(const std::vector<Result>& results)
{
  if (std::any_of(results.begin(), results.end(), [](const Result& result) { return result.ran; }))
    return "";
  const auto stopped =
      std::find_if(results.begin(), results.end(), [](const Result& result) { return result.readable; });
  return stopped == results.end() ? "" : stopped->failure;
}

std::string messageOf(const Result& result)
{
  if (!result.difference)
    return result.failure;
  const std::string& command = result.difference->command;
  return "line " + std::to_string(result.difference->line) + " differs, " +
         (command.empty() ? "at the start" : "after the command " + command);
}

} // namespace cli::test
