// Runs the commands of a transcript again, in a process of its own: what a service does to it is only seen there.
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

#include "StandIns.h"
#include "base/Progress.h"

namespace cli::replay
{

struct ReplaySettings
{
  /// Nothing given: the sample service.
  std::optional<std::filesystem::path> service;
  /// Nothing given: the service's own map.
  std::optional<std::filesystem::path> map;
  /// For one run of all commands.
  std::chrono::seconds patience{60};
};

struct ReplayedRun
{
  /// What was recorded this time, as far as it came.
  transcript::Transcript actual;
  /// How it ended when that was not with the last command; empty otherwise.
  std::string trouble;
  /// The map that it ran with.
  std::filesystem::path map;
};

/// Runs the commands on a new device in a temporary folder. To be called while the process has one thread. Throws
/// `StartError` when the device cannot be brought up.
ReplayedRun runAgain(const transcript::Transcript& transcript, const StandIns& standIns, const ReplaySettings& settings,
                     Progress& progress);

} // namespace cli::replay
