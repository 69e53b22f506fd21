// The reason stands in an element of its own, which no column can be, so an update is refused for it.
#include "NotEncrypted.h"

#include "XmlText.h"

namespace host
{
const char* const notEncryptedElement = "NotEncrypted";

std::string notEncrypted(const std::string& why)
{
  const std::string name = notEncryptedElement;
  return "<" + name + ">" + escapedElementText(isXmlText(why) ? why : "unreadable reason") + "</" + name + ">";
}
} // namespace host
