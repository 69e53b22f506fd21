#include "XmlEvents.h"

#include <cctype>
#include <cstring>

#include <expat.h>
#include <pugixml.hpp>

#include "Fuzz.h"

namespace fuzz
{

namespace
{

void addText(std::vector<XmlEvent>& events, const std::string& text)
{
  if (text.empty())
    return;
  if (!events.empty() && events.back().kind == XmlEvent::Kind::text)
    events.back().text += text;
  else
    events.push_back({XmlEvent::Kind::text, text, {}});
}

void onStart(void* userData, const char* name, const char** attributes)
{
  XmlEvent event{XmlEvent::Kind::start, name, {}};
  for (; *attributes != nullptr; attributes += 2)
    if (std::strcmp(*attributes, "name") == 0)
      event.nameAttribute = attributes[1];
  static_cast<XmlReading*>(userData)->events.push_back(event);
}

void onText(void* userData, const char* text, int length)
{
  addText(static_cast<XmlReading*>(userData)->events, std::string(text, static_cast<std::size_t>(length)));
}

void onEnd(void* userData, const char* name)
{
  static_cast<XmlReading*>(userData)->events.push_back({XmlEvent::Kind::end, name, {}});
}

XmlReading readByExpat(const std::string& text)
{
  XmlReading reading;
  XML_Parser parser = XML_ParserCreate(nullptr);
  XML_SetElementHandler(parser, onStart, onEnd);
  XML_SetCharacterDataHandler(parser, onText);
  XML_SetUserData(parser, &reading);
  reading.wellFormed = XML_Parse(parser, text.data(), static_cast<int>(text.size()), 1) == XML_STATUS_OK;
  XML_ParserFree(parser);
  return reading;
}

void walk(const pugi::xml_node& node, std::vector<XmlEvent>& events)
{
  if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata)
    addText(events, node.value());
  if (node.type() != pugi::node_element)
    return;
  XmlEvent start{XmlEvent::Kind::start, node.name(), {}};
  if (const pugi::xml_attribute name = node.attribute("name"))
    start.nameAttribute = name.value();
  events.push_back(start);
  for (const pugi::xml_node& child : node)
    walk(child, events);
  events.push_back({XmlEvent::Kind::end, node.name(), {}});
}

/// Other encodings and declared entities are beyond the second reader.
bool isWithinReach(const std::string& text)
{
  const std::size_t encoding = text.find("encoding");
  return text.find('\0') == std::string::npos && text.find("<!DOCTYPE") == std::string::npos &&
         (encoding == std::string::npos || text.compare(encoding, 16, "encoding=\"utf-8\"") == 0);
}

std::vector<XmlEvent> eventsByPugixml(const std::string& text)
{
  pugi::xml_document document;
  const pugi::xml_parse_result result =
      document.load_buffer(text.data(), text.size(), pugi::parse_default | pugi::parse_ws_pcdata, pugi::encoding_utf8);
  require(bool(result), "two readers agree that a document is well-formed", text);
  std::vector<XmlEvent> events;
  for (const pugi::xml_node& child : document)
    walk(child, events);
  return events;
}

} // namespace

XmlReading readXml(const std::string& text)
{
  XmlReading reading = readByExpat(text);
  if (reading.wellFormed && isWithinReach(text))
    reading.events = eventsByPugixml(text);
  return reading;
}

} // namespace fuzz
