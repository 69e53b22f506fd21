// The committed inputs of a fuzzer, which stand in one text file; inputs.py says how, and writes it.
#pragma once

#include <string>
#include <vector>

namespace fuzz
{

struct Input
{
  std::string name;
  std::string content;
};

/// The inputs of such a text, in its order. Throws std::runtime_error naming the line that is damaged: one that lost or
/// got a byte, inputs that are missing at the end, names out of order.
std::vector<Input> readInputs(const std::string& text);

} // namespace fuzz
