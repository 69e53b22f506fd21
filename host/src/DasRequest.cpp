// Plain requests are read without a parser. Any other is parsed into a tree, which is judged element by element.
#include "DasRequest.h"

#include <algorithm>
#include <array>
#include <set>
#include <string_view>

#include "NotEncrypted.h"
#include "PlainDasRequest.h"
#include "Refusal.h"
#include "XmlTree.h"

namespace host
{
namespace
{
constexpr std::string_view blanks = " \t\r\n";

std::string named(const std::string& name)
{
  return "'" + name + "'";
}

void requireNoAttributes(const XmlNode& node)
{
  if (!node.attributes.empty())
    throw Refusal("element " + named(node.name) + " has attribute " + named(node.attributes.front().first));
}

void requireOnlyElements(const XmlNode& node)
{
  if (node.text.find_first_not_of(blanks) != std::string::npos)
    throw Refusal("element " + named(node.name) + " holds text where elements belong");
}

/// The text of an element that holds nothing but text.
std::string textOf(XmlNode& node)
{
  requireNoAttributes(node);
  if (!node.children.empty())
    throw Refusal("element " + named(node.children.front().name) + " does not belong into " + named(node.name));
  return std::move(node.text);
}

DasCell cellOf(XmlNode& node)
{
  if (isMessageElement(node.name))
    throw Refusal("element " + named(node.name) + " does not belong there");
  if (!node.children.empty() && node.children.front().name == notEncryptedElement)
    throw Refusal("the value of column " + named(node.name) +
                  " could not be encrypted, so what is stored stays: " + node.children.front().text);
  return {node.name, textOf(node)};
}

std::string schemaNameOf(const XmlNode& root)
{
  if (root.name != "Schema")
    throw Refusal("the request is no 'Schema' but " + named(root.name));
  std::optional<std::string> name;
  for (const auto& [attribute, value] : root.attributes)
  {
    if (attribute != "name")
      throw Refusal("element 'Schema' has attribute " + named(attribute));
    name = value;
  }
  if (!name)
    throw Refusal("element 'Schema' has no name");
  return *name;
}

DasRequest::Kind kindOf(XmlNode& root)
{
  if (root.children.empty() || root.children.front().name != "ReasonForMessage")
    throw Refusal("the request does not begin with its 'ReasonForMessage'");
  const std::string reason = textOf(root.children.front());
  if (reason == "read_request")
    return DasRequest::Kind::read;
  if (reason == "update_request")
    return DasRequest::Kind::update;
  throw Refusal("the reason for the message is neither 'read_request' nor 'update_request'");
}

/// A row's cells. Its first one is taken for the index column, so that one cannot come again either.
std::vector<DasCell> entryOf(XmlNode& node)
{
  requireNoAttributes(node);
  requireOnlyElements(node);
  std::vector<DasCell> cells;
  std::set<std::string> seen;
  for (XmlNode& child : node.children)
  {
    cells.push_back(cellOf(child));
    if (!seen.insert(child.name).second)
      throw Refusal("column " + named(child.name) + " stands twice in an 'Entry'");
  }
  if (cells.empty())
    throw Refusal("an 'Entry' is empty");
  return cells;
}

void readSelection(XmlNode& node, DasRequest& request)
{
  if (node.name == "ResultCols")
  {
    if (request.resultColumn)
      throw Refusal("element 'ResultCols' stands twice");
    request.resultColumn = textOf(node);
    return;
  }
  if (node.name != "Entry")
    throw Refusal("element " + named(node.name) + " does not belong into a read request");
  if (!request.resultColumn)
    throw Refusal("an 'Entry' stands before any 'ResultCols'");
  if (request.row)
    throw Refusal("element 'Entry' stands twice");
  std::vector<DasCell> cells = entryOf(node);
  if (cells.size() != 1)
    throw Refusal("a read request's 'Entry' holds more than the index column");
  request.row = std::move(cells.front());
}

void readChange(XmlNode& node, DasRequest& request)
{
  if (node.name != "Entry")
  {
    request.cells.push_back(cellOf(node));
    return;
  }
  std::vector<DasCell> cells = entryOf(node);
  if (cells.size() < 2)
    throw Refusal("an update request's 'Entry' holds no column beside the index column");
  request.entries.push_back(std::move(cells));
}
} // namespace

bool isMessageElement(std::string_view name)
{
  static constexpr std::array<std::string_view, 5> names = {"Schema", "ReasonForMessage", "ResultCols", "Entry",
                                                            "Context"};
  return std::find(names.begin(), names.end(), name) != names.end();
}

void readDasRequest(const char* text, std::size_t length, DasRequest& request)
{
  if (text != nullptr && readPlainDasRequest({text, length}, request))
    return;
  request = {};
  XmlNode root;
  try
  {
    root = parseXml(text, length);
  }
  catch (const XmlError& error)
  {
    throw Refusal(std::string("the request cannot be read: ") + error.what());
  }
  request.schema = schemaNameOf(root);
  requireOnlyElements(root);
  request.kind = kindOf(root);
  const bool isRead = request.kind == DasRequest::Kind::read;
  for (auto child = root.children.begin() + 1; child != root.children.end(); ++child)
  {
    if (isRead)
      readSelection(*child, request);
    else
      readChange(*child, request);
  }
  if (!isRead && request.cells.empty() && request.entries.empty())
    throw Refusal("an update request changes nothing");
}
} // namespace host
