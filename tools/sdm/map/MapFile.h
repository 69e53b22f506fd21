// Reads item maps, and replaces them as a whole.
#pragma once

#include <stdexcept>
#include <string>

namespace cli
{

/// Why a file cannot be read or written, in one sentence that names it.
class FileError : public std::runtime_error
{
public:
  using std::runtime_error::runtime_error;
};

/// The content of a regular file; "-" is standard input, a pipe included. Throws `FileError`, also for more than 64
/// MiB.
std::string readMap(const std::string& path);

/// Replaces the content of a file. A reader finds the old content or the new one, and a failure leaves the old one.
/// Keeps the file mode, and follows links. Throws `FileError`, also when the file does
/// not hold `old` any more or is no ordinary file.
void replaceMap(const std::string& path, const std::string& old, const std::string& content);

} // namespace cli
