// A text is laid out as XML; one that is no XML is described and not shown.
#include "TrafficText.h"

#include <pugixml.hpp>

#include "base/Shown.h"

namespace cli
{
namespace
{

/// What the manager and the database write has a few levels; a reply may come from anybody.
constexpr std::size_t deepestLevel = 32;

bool holdsElements(const pugi::xml_node& node)
{
  return node.first_child().type() == pugi::node_element;
}

std::string opening(const pugi::xml_node& node)
{
  std::string text = shown(node.name());
  for (const pugi::xml_attribute& attribute : node.attributes())
    text += " " + shown(attribute.name()) + "=\"" + shown(attribute.value()) + "\"";
  return text;
}

std::string content(const pugi::xml_node& node, const Masking& masking)
{
  return masking.isSecretElement(node.name()) ? Masking::mask : shown(node.child_value());
}

void layOut(const pugi::xml_node& node, const Masking& masking, const std::string& margin, std::size_t level,
            std::string& text)
{
  const std::string name = shown(node.name());
  if (node.type() != pugi::node_element)
    return;
  if (!holdsElements(node))
  {
    text += margin + "<" + opening(node) + ">" + content(node, masking) + "</" + name + ">\n";
    return;
  }
  text += margin + "<" + opening(node) + ">\n";
  if (level == deepestLevel)
    text += margin + "  (what is nested deeper than " + std::to_string(deepestLevel) + " levels is left out)\n";
  for (const pugi::xml_node& child : node.children())
  {
    if (level < deepestLevel)
      layOut(child, masking, margin + "  ", level + 1, text);
  }
  text += margin + "</" + name + ">\n";
}

} // namespace

std::string indented(const std::string& xml, const Masking& masking, const std::string& margin)
{
  pugi::xml_document document;
  if (!document.load_buffer(xml.data(), xml.size(), pugi::parse_default | pugi::parse_ws_pcdata_single))
    return margin + "(" + std::to_string(xml.size()) + " bytes that are no XML)\n";
  std::string text;
  for (const pugi::xml_node& node : document.children())
    layOut(node, masking, margin, 1, text);
  return text;
}

std::string messageKind(const std::string& xml)
{
  pugi::xml_document document;
  // What is no XML has no kind, however far it could be read.
  if (!document.load_buffer(xml.data(), xml.size()))
    return "";
  return document.child("Schema").child_value("ReasonForMessage");
}

std::string requestedSchema(const std::string& request)
{
  pugi::xml_document document;
  document.load_buffer(request.data(), request.size());
  return document.child("Schema").attribute("name").value();
}

std::string replyError(const std::string& reply)
{
  pugi::xml_document document;
  document.load_buffer(reply.data(), reply.size());
  const std::string reason = document.child("Schema").child_value("Error");
  return reason.empty() ? "no reason given" : shown(reason);
}

} // namespace cli
