// Runs another program and keeps its answer.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace cli
{

struct ChildAnswer
{
  /// What it wrote to its standard output.
  std::string output;
  /// The first line of what it wrote to its standard error.
  std::string complaint;
  /// Its exit code; 128 and the number of the signal that ended it.
  int code = 0;
};

/// The texts as `exec` takes them, with a null pointer at the end. They point into `words`.
std::vector<char*> argumentsOf(std::vector<std::string>& words);

/// Runs a program of the search path with these arguments, the first of which is its name; no shell sees them. Its
/// standard input is empty. Blocks until it ends. Throws `Unusable` when it cannot be started, and when it answers more
/// than `most` bytes, which ends it.
ChildAnswer answerOf(const std::vector<std::string>& command, std::size_t most);

} // namespace cli
