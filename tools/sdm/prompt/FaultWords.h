// Faults as words of a command: "das slow 200 3".
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "host/Faults.h"

namespace cli
{

/// What is wrong with the words, for the operator.
class FaultWordsError : public std::runtime_error
{
public:
  using std::runtime_error::runtime_error;
};

/// Place, fault, milliseconds where it is slow, and a number of calls, if any. Throws `FaultWordsError`.
host::Fault readFault(const std::vector<std::string>& words);

/// "das slow 200, for 3 more calls", the way it is typed.
std::string describeFault(const host::Fault& fault);

/// The words that may follow these.
std::vector<std::string> faultWordsAfter(const std::vector<std::string>& words);

} // namespace cli
