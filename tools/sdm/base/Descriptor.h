// A file descriptor that closes itself.
#pragma once

#include <string>

namespace cli
{

/// Owns a file descriptor and closes it at the end of its life.
class Descriptor
{
public:
  /// Negative when the file could not be opened.
  explicit Descriptor(int opened) : number(opened)
  {
  }
  ~Descriptor();
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  const int number;
};

/// False when not all of it could be written; the reason is in `errno`.
bool writeAll(int descriptor, const std::string& content);

} // namespace cli
