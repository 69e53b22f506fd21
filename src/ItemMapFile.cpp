#include "ItemMapFile.h"

#include <cstring>

namespace sdm
{

ItemMapFile::ItemMapFile(const char* path) : file(std::fopen(path, "re"))
{
}

ItemMapFile::Line ItemMapFile::next()
{
  while (std::fgets(buffer.data(), static_cast<int>(buffer.size()), file.get()) != nullptr)
  {
    if (!lineContinues)
      ++number;
    // What stands behind a NUL byte is out of reach, the line's end included; the line is over all the same.
    std::size_t length = std::strlen(buffer.data());
    const bool complete = length > 0 && buffer[length - 1] == '\n';
    lineContinues = length == longestLine && !complete;
    if (complete)
      buffer[--length] = '\0';
    if (length < shortestLine)
      continue;
    return split() ? Line::item : Line::tooFewColumns;
  }
  return std::ferror(file.get()) != 0 ? Line::readError : Line::end;
}

bool ItemMapFile::split()
{
  char* rest = buffer.data();
  columns[0] = rest;
  for (std::size_t i = 1; i < columns.size(); ++i)
  {
    rest = std::strchr(rest, ',');
    if (rest == nullptr)
      return false;
    *rest++ = '\0';
    columns[i] = rest;
  }
  if (char* surplus = std::strchr(rest, ','))
    *surplus = '\0';
  return true;
}

} // namespace sdm
