// Lines from a pipe or file.
#include <iostream>

#include "LineReader.h"

namespace cli
{
namespace
{

class PlainReader : public LineReader
{
public:
  bool next(std::string& line) override
  {
    if (!std::getline(std::cin, line))
      return false;
    // Scripts from elsewhere end their lines in two characters.
    if (!line.empty() && line.back() == '\r')
      line.pop_back();
    return true;
  }
};

} // namespace

std::unique_ptr<LineReader> makePlainReader()
{
  return std::make_unique<PlainReader>();
}

} // namespace cli
