// A transcript against what happens today.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "Comparison.h"
#include "ReplayedRun.h"

namespace cli::replay
{

struct Verdict
{
  /// Nothing: all went as recorded.
  std::optional<Difference> difference;
  /// What may explain one: another service, another map, another version.
  std::vector<std::string> notes;
  /// What was recorded this time.
  transcript::Transcript actual;
  std::filesystem::path map;
  std::size_t commands = 0;
};

/// Runs the commands of the transcript, again with other stand-ins where the service judged them otherwise than the
/// secrets. Throws `StartError` when the device cannot be brought up.
Verdict replayAndCompare(const transcript::Transcript& transcript, const ReplaySettings& settings, Progress& progress);

} // namespace cli::replay
