// What all fuzzers share: how a broken rule is reported, and how inputs are taken apart.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace fuzz
{

/// Ends the program with this report on standard error when `holds` is false: that is what makes an input a finding.
void require(bool holds, const std::string& rule, const std::string& seen = "");

/// As above, for two texts that have to be equal.
void requireEqual(const std::string& actual, const std::string& expected, const std::string& rule);

std::string textOf(const std::uint8_t* data, std::size_t size);

/// The pieces between the separators: one more than there are separators.
std::vector<std::string> parts(const std::string& text, char separator);

/// The texts, each on a line of its own.
std::string lines(const std::vector<std::string>& texts);

/// Separates the messages of one input. XML cannot carry it, so no message needs it.
constexpr char nextMessage = '\x1e';

} // namespace fuzz

extern "C"
{
  /// One input; returns 0.
  int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

  /// Changes an input in place and returns its new size, at most `maxSize`.
  std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned int seed);

  /// The same, byte by byte; of libFuzzer, or of the driver that replays.
  std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);
}
