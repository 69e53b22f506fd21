#include "Dialect.h"

namespace host
{
std::string quotedIdentifier(const std::string& identifier)
{
  std::string text = "\"";
  for (const char character : identifier)
  {
    if (character == '"')
      text += '"';
    text += character;
  }
  return text + '"';
}
} // namespace host
