// Item maps on the disk: read whole, and replaced whole or not at all.
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

/// Puts another content in the place of a file: what opens it finds the old content or the new one, and a failure
/// leaves the old one. Keeps its permissions, and links that lead to it. Throws `FileError`, also when the file does
/// not hold `old` any more or is no ordinary file.
void replaceMap(const std::string& path, const std::string& old, const std::string& content);

} // namespace cli
