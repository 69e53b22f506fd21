#include "test/Suite.h"

#include <algorithm>
#include <system_error>

#include "ExceptionText.h"
#include "StartError.h"

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

Result runTranscript(const std::filesystem::path& file, const replay::ReplaySettings& settings, Coverage& coverage,
                     Progress& progress)
{
  Result result;
  result.name = file.filename().string();
  const auto began = std::chrono::steady_clock::now();
  record::Transcript transcript;
  try
  {
    transcript = record::readTranscript(file);
  }
  catch (const std::exception& error)
  {
    result.failure = exceptionText(error);
    return result;
  }
  replay::Verdict verdict = replay::rehearse(transcript, settings, progress);
  result.duration = std::chrono::steady_clock::now() - began;
  coverage.note(verdict.actual, verdict.map);
  result.difference = std::move(verdict.difference);
  result.notes = std::move(verdict.notes);
  return result;
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
