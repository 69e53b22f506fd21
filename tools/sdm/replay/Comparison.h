// Where two transcripts part.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "transcript/Transcript.h"

namespace cli::replay
{

struct Difference
{
  /// The number of the event in the expected transcript; one behind its last for what came in addition.
  std::size_t event = 0;
  /// Its line there.
  std::size_t line = 0;
  /// Events as lines of JSON; empty when there was none.
  std::string expected;
  std::string actual;
  /// The expected lines before, which came as they should.
  std::vector<std::string> before;
  /// The last command before it.
  std::string command;
};

/// Whether events of this kind are compared: what the platform logs about files and waits, and the names of callbacks
/// that nobody called, may differ.
bool isCompared(const transcript::Event& event);

/// The first difference; nothing when there is none. `atEnd` is what happened where the actual transcript ends.
std::optional<Difference> compared(const transcript::Transcript& expected, const transcript::Transcript& actual,
                                   const std::string& atEnd);

} // namespace cli::replay
