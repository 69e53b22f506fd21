// Texts of exceptions as an operator reads them.
#pragma once

#include <exception>
#include <string>

namespace cli
{

/// What an exception says: of the file system's the files and the reason, without the words that the C++ library puts
/// around them.
std::string exceptionText(const std::exception& error);

} // namespace cli
