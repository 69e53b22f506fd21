// The text of an exception, for an operator.
#pragma once

#include <exception>
#include <string>

namespace cli
{

/// The text of an exception. Of a file-system error only the files and the reason, without the words that the C++
/// library adds.
std::string exceptionText(const std::exception& error);

} // namespace cli
