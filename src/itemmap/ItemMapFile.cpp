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
    const bool begins = !lineContinues;
    if (begins)
      ++number;
    // What stands behind a NUL byte is out of reach, the line's end included; the line is over all the same.
    std::size_t length = std::strlen(buffer.data());
    const bool complete = length > 0 && buffer[length - 1] == '\n';
    lineContinues = length == longestLine && !complete;
    if (begins)
      tooLong = lineContinues && moreFollows();
    if (complete)
      buffer[--length] = '\0';
    if (length < shortestLine)
      continue;
    return split(length) ? Line::item : Line::tooFewColumns;
  }
  return std::ferror(file.get()) != 0 ? Line::readError : Line::end;
}

/// Is there more of the line than what was read? Takes nothing from the file.
bool ItemMapFile::moreFollows()
{
  const int next = std::getc(file.get());
  if (next == EOF)
    return false;
  std::ungetc(next, file.get());
  return next != '\n';
}

bool ItemMapFile::split(std::size_t length)
{
  char* rest = buffer.data();
  char* const end = rest + length;
  for (std::size_t i = 0; i + 1 < columns.size(); ++i)
  {
    columns[i] = rest;
    char* comma = static_cast<char*>(std::memchr(rest, ',', static_cast<std::size_t>(end - rest)));
    const bool isLast = i + 2 == columns.size();
    if (comma == nullptr && !isLast)
      return false;
    rest = comma != nullptr ? comma : end;
    *rest++ = '\0';
  }
  columns.back() = rest;
  return true;
}

} // namespace sdm
