#include "RequestModel.h"

#include <algorithm>
#include <optional>
#include <set>

#include <pugixml.hpp>

#include "Fuzz.h"
#include "XmlEvents.h"

namespace fuzz
{

namespace
{

using Cells = std::vector<std::pair<std::string, std::string>>;

const char* const refusal = "error_response\n";

/// A request as its text alone has it; nothing for a text that is none.
struct Request
{
  std::string schema;
  bool reads = false;
  std::optional<std::string> wanted;
  std::optional<Cells> row;
  Cells cells;
  std::vector<Cells> entries;
};

bool isElement(const pugi::xml_node& node)
{
  return node.type() == pugi::node_element;
}

std::string textIn(const pugi::xml_node& node)
{
  std::string text;
  for (const pugi::xml_node& child : node)
    if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata)
      text += child.value();
  return text;
}

bool holdsElements(const pugi::xml_node& node)
{
  return std::any_of(node.begin(), node.end(), isElement);
}

bool holdsWords(const pugi::xml_node& node)
{
  return textIn(node).find_first_not_of(" \t\r\n") != std::string::npos;
}

/// The element's text, where it is an element of text and without attributes.
std::optional<std::string> plainText(const pugi::xml_node& node)
{
  if (holdsElements(node) || node.first_attribute())
    return std::nullopt;
  return textIn(node);
}

bool addCell(const pugi::xml_node& node, Cells& cells)
{
  static const std::set<std::string> meant = {"Schema", "ReasonForMessage", "ResultCols", "Entry", "Context"};
  const auto text = plainText(node);
  if (!text || meant.count(node.name()) != 0)
    return false;
  cells.emplace_back(node.name(), *text);
  return true;
}

std::optional<Cells> entryOf(const pugi::xml_node& node)
{
  Cells cells;
  std::set<std::string> names;
  if (node.first_attribute() || holdsWords(node))
    return std::nullopt;
  for (const pugi::xml_node& child : node)
    if (isElement(child) && (!addCell(child, cells) || !names.insert(child.name()).second))
      return std::nullopt;
  return cells;
}

bool addSelection(const pugi::xml_node& node, Request& request)
{
  const std::string name = node.name();
  if (name == "ResultCols" && !request.wanted)
  {
    request.wanted = plainText(node);
    return request.wanted.has_value();
  }
  if (name != "Entry" || !request.wanted || request.row)
    return false;
  request.row = entryOf(node);
  return request.row && request.row->size() == 1;
}

bool addChange(const pugi::xml_node& node, Request& request)
{
  if (std::string(node.name()) != "Entry")
    return addCell(node, request.cells);
  const auto cells = entryOf(node);
  if (!cells || cells->size() < 2)
    return false;
  request.entries.push_back(*cells);
  return true;
}

std::optional<Request> requestOf(const pugi::xml_node& root)
{
  const pugi::xml_attribute name = root.first_attribute();
  if (std::string(root.name()) != "Schema" || std::string(name.name()) != "name" || name.next_attribute() ||
      holdsWords(root))
    return std::nullopt;
  Request request;
  request.schema = name.value();
  bool first = true;
  for (const pugi::xml_node& child : root)
  {
    if (!isElement(child))
      continue;
    if (first)
    {
      const std::string reason = plainText(child).value_or("");
      if (std::string(child.name()) != "ReasonForMessage" || (reason != "read_request" && reason != "update_request"))
        return std::nullopt;
      request.reads = reason == "read_request";
      first = false;
    }
    else if (!(request.reads ? addSelection(child, request) : addChange(child, request)))
      return std::nullopt;
  }
  const bool empty = !request.reads && request.cells.empty() && request.entries.empty();
  return first || empty ? std::nullopt : std::optional<Request>(request);
}

bool hasColumn(const ModelTable& table, const std::string& column)
{
  return std::find(table.columns.begin(), table.columns.end(), column) != table.columns.end();
}

std::string readTable(const ModelTable& table, const Request& request)
{
  const bool indexed = !table.indexColumn.empty();
  if (request.row && request.row->front().first != table.indexColumn)
    return refusal;
  const bool wantsIndex = indexed && request.wanted == table.indexColumn;
  if (request.wanted && !wantsIndex && !hasColumn(table, *request.wanted))
    return refusal;
  std::string text = "read_response\n";
  for (const auto& [row, cells] : table.rows)
  {
    if (request.row && request.row->front().second != row)
      continue;
    if (request.wanted && !wantsIndex && cells.count(*request.wanted) == 0)
      continue;
    text += indexed ? "Entry\n" + table.indexColumn + "=" + row + "\n" : "";
    for (const std::string& column : table.columns)
      if ((!request.wanted || *request.wanted == column) && cells.count(column) != 0)
        text += column + "=" + cells.at(column) + "\n";
  }
  return text;
}

bool change(ModelTable& table, const std::string& row, Cells::const_iterator begin, Cells::const_iterator end)
{
  auto found = std::find_if(table.rows.begin(), table.rows.end(), [&](const auto& each) { return each.first == row; });
  if (found == table.rows.end())
    found = table.rows.insert(table.rows.end(), {row, {}});
  for (; begin != end; ++begin)
  {
    if (!hasColumn(table, begin->first))
      return false;
    found->second[begin->first] = begin->second;
  }
  return true;
}

std::string updateTable(ModelTable& table, const Request& request)
{
  ModelTable changed = table;
  bool valid = request.cells.empty() ||
               (table.indexColumn.empty() && change(changed, "", request.cells.begin(), request.cells.end()));
  for (const Cells& entry : request.entries)
    valid = valid && !table.indexColumn.empty() && entry.front().first == table.indexColumn &&
            change(changed, entry.front().second, entry.begin() + 1, entry.end());
  if (!valid)
    return refusal;
  table = changed;
  return "update_response\n";
}

} // namespace

RequestModel::RequestModel(std::vector<ModelTable> itsTables) : tables(std::move(itsTables))
{
}

bool RequestModel::canJudge(const std::string& request)
{
  const std::size_t encoding = request.find("encoding");
  return request.find('\0') == std::string::npos && request.find("<!DOCTYPE") == std::string::npos &&
         (encoding == std::string::npos || request.compare(encoding, 16, "encoding=\"utf-8\"") == 0);
}

std::string RequestModel::answer(const std::string& request)
{
  if (!readXml(request).wellFormed)
    return refusal;
  pugi::xml_document document;
  document.load_buffer(request.data(), request.size(), pugi::parse_default | pugi::parse_ws_pcdata,
                       pugi::encoding_utf8);
  const auto asked = requestOf(document.document_element());
  if (!asked)
    return refusal;
  for (ModelTable& table : tables)
    if (table.schema == asked->schema)
      return asked->reads ? readTable(table, *asked) : updateTable(table, *asked);
  return refusal;
}

std::string RequestModel::wholeTable(const ModelTable& table)
{
  return readTable(table, {});
}

std::string RequestModel::described(const std::string& reply)
{
  require(readXml(reply).wellFormed, "every reply is well-formed", reply);
  pugi::xml_document document;
  document.load_buffer(reply.data(), reply.size(), pugi::parse_default | pugi::parse_ws_pcdata, pugi::encoding_utf8);
  const pugi::xml_node root = document.document_element();
  require(std::string(root.name()) == "Schema", "every reply is a Schema", reply);
  std::string text = textIn(root.first_child()) + "\n";
  require(text == refusal || text == "read_response\n" || text == "update_response\n", "every reply has a kind", reply);
  if (text == refusal)
    return text;
  for (pugi::xml_node node = root.first_child().next_sibling(); node; node = node.next_sibling())
  {
    const bool entry = std::string(node.name()) == "Entry";
    text += entry ? "Entry\n" : node.name() + ("=" + textIn(node)) + "\n";
    for (const pugi::xml_node& cell : node)
      if (entry)
        text += cell.name() + ("=" + textIn(cell)) + "\n";
  }
  return text;
}

} // namespace fuzz
