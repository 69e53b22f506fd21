// Reads a transcript.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "Recorder.h"

namespace cli::transcript
{

// NOLINTNEXTLINE(bugprone-exception-escape): moving JSON is declared not to throw, but checks itself on the way.
struct Event
{
  nlohmann::ordered_json content;
  /// Counts from 1.
  std::size_t line = 0;
};

/// "setter", "log" and so on: the first name of the event.
std::string kindOf(const Event& event);

struct Transcript
{
  std::filesystem::path file;
  Header header;
  /// Everything behind the header, in order.
  std::vector<Event> events;
  /// Whether its end is there.
  bool complete = false;
};

/// Throws `StartError` naming file, line and reason: a file that cannot be read, has more than 64 MiB or holds no
/// transcript, a line that is no event or nested too deep, one of a later form. A transcript that was cut off is one of
/// them when it has to be complete; otherwise what is there is read.
Transcript readTranscript(const std::filesystem::path& file, bool complete = true);

} // namespace cli::transcript
