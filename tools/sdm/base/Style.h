// Colours for terminals.
#pragma once

#include <string>

namespace cli
{

/// Whether this descriptor is a terminal that shows colours, and nobody turned them off.
bool wantsColours(int descriptor);

/// Marks texts for a terminal; without colours they stay as they are.
class Style
{
public:
  explicit Style(bool coloured) : colours(coloured)
  {
  }

  std::string strong(const std::string& text) const
  {
    return in("1", text);
  }
  std::string faint(const std::string& text) const
  {
    return in("2", text);
  }
  std::string good(const std::string& text) const
  {
    return in("32", text);
  }
  std::string bad(const std::string& text) const
  {
    return in("31", text);
  }
  std::string notable(const std::string& text) const
  {
    return in("33", text);
  }

private:
  std::string in(const char* code, const std::string& text) const
  {
    return colours && !text.empty() ? std::string("\x1b[") + code + "m" + text + "\x1b[0m" : text;
  }

  bool colours;
};

} // namespace cli
