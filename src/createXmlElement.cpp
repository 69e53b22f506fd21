#include "createXmlElement.h"

std::string createXmlElement(const std::string& name, const std::string& value)
{
  std::string element;
  element.reserve(2 * name.size() + value.size() + 5);
  element.append("<").append(name).append(">").append(value);
  element.append("</").append(name).append(">");
  return element;
}
