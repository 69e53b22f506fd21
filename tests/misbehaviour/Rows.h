// The table of calls: which operation makes which call, how often, and what becomes of what goes wrong in it.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace misbehaviour
{

/// What an exception of the call leads to. In both cases the lock is free and no parse, group or record is left over.
enum class Thrown
{
  reachesTheCaller,
  isSwallowed
};

struct Row
{
  const char* operation;
  const char* call;
  /// How often, in a run in which nothing goes wrong.
  std::size_t times;
  Thrown thrown;

  /// How tests name it.
  friend void PrintTo(const Row& row, std::ostream* out)
  {
    *out << row.name();
  }
  std::string name() const
  {
    return std::string(operation) + "_" + call;
  }
};

/// All of them: a test holds the table against what operations really call.
const std::vector<Row>& rows();

} // namespace misbehaviour
