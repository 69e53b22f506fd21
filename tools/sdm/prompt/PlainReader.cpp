// Lines from a pipe or file.
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "Interrupts.h"
#include "LineReader.h"

namespace cli
{
namespace
{

class PlainReader : public LineReader
{
public:
  PlainReader(Interrupts& itsInterrupts, bool& itsInterrupted) : interrupts(itsInterrupts), interrupted(itsInterrupted)
  {
  }

  bool next(std::string& line) override
  {
    line.clear();
    while (!takeLine(line))
    {
      if (!fill())
        return !interrupted && !line.empty();
    }
    // Scripts from elsewhere end their lines in two characters.
    if (!line.empty() && line.back() == '\r')
      line.pop_back();
    return true;
  }

private:
  /// Adds what is there to the line, as far as it is not too long by then. Whether its end was among that.
  bool takeLine(std::string& line)
  {
    const std::size_t end = unread.find('\n', place);
    const std::size_t there = std::min(end, unread.size()) - place;
    // One byte more, which tells that the line is too long, and one for the first of two characters at its end.
    line.append(unread, place, std::min(there, longestLine + 2 - line.size()));
    place = end == std::string::npos ? unread.size() : end + 1;
    return end != std::string::npos;
  }

  /// False at the end of input.
  bool fill()
  {
    std::array<char, 65536> piece{};
    ssize_t count = -1;
    do
    {
      if (!interrupts.waitForInput())
      {
        interrupted = true;
        return false;
      }
      count = ::read(STDIN_FILENO, piece.data(), piece.size());
    } while (count < 0 && (errno == EINTR || errno == EAGAIN));
    unread.assign(piece.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    place = 0;
    return count > 0;
  }

  Interrupts& interrupts;
  bool& interrupted;
  std::string unread;
  std::size_t place = 0;
};

} // namespace

std::unique_ptr<LineReader> makePlainReader(Interrupts& interrupts, bool& interrupted)
{
  return std::make_unique<PlainReader>(interrupts, interrupted);
}

} // namespace cli
