// Replies of the database, good and bad, made from a life's script.
#include "Surroundings.h"

#include "Trace.h"

namespace judge
{

namespace
{

std::string between(const std::string& text, const std::string& begin, const std::string& end)
{
  const std::size_t at = text.find(begin);
  if (at == std::string::npos)
    return "";
  const std::size_t from = at + begin.size();
  return text.substr(from, text.find(end, from) - from);
}

std::string tagged(const std::string& name, const std::string& content)
{
  return "<" + name + ">" + content + "</" + name + ">";
}

std::string cellText(const Reply& script, std::size_t number)
{
  if (script.cells.empty())
    return "";
  const std::string& cell = script.cells[number % script.cells.size()];
  return !cell.empty() && cell.front() == '!' ? recording::encrypted(cell.substr(1)) : cell;
}

std::string rows(const std::string& schema, const Reply& script, const std::vector<MapLine>& map)
{
  std::string all;
  std::size_t number = 0;
  for (const MapLine& line : map)
  {
    const auto& c = line.columns;
    if (c[1] != schema || c[2].empty() || ((script.items >> (number % 8)) & 1U) == 0)
    {
      ++number;
      continue;
    }
    const std::string cell = tagged(c[2], cellText(script, number++));
    const std::string index = c[3].empty() ? "" : tagged(c[3], c[4]);
    const std::string row = script.indexLast ? cell + index : index + cell;
    all += c[3].empty() ? row : tagged("Entry", row);
  }
  return all;
}

std::string whole(const std::string& request, const Reply& script, const std::vector<MapLine>& map)
{
  const std::string asked = between(request, "<Schema name=\"", "\"");
  const std::string schema = script.schema == "@" ? asked : script.schema;
  const bool update = request.find("update_request") != std::string::npos;
  const std::string kind = script.kind == "@" ? (update ? "update_response" : "read_response") : script.kind;
  const std::string reason = kind == "-" ? "" : tagged("ReasonForMessage", kind);
  std::string content = rows(schema, script, map);
  if (script.extra == "Context")
    content = tagged("Context", content);
  if (script.extra == "nested")
    content = "<Schema name=\"" + schema + "\">" + content + "</Schema><Schema>" + content + "</Schema>";
  if (script.extra == "extra")
    content = "<Unknown name=\"x\">u</Unknown>\n<!-- a remark -->" + content + "<ResultCols/>";
  const std::string name = schema == "-" ? "" : " kind=\"table\" name=\"" + schema + "\"";
  return "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema" + name + ">" +
         (script.kindLast ? content + reason : reason + content) + "</Schema>";
}

} // namespace

std::string replyTo(const std::string& request, const Reply& script, const std::vector<MapLine>& map)
{
  const std::string good = whole(request, script, map);
  const std::string column = between(request, "<ResultCols>", "</ResultCols>");
  switch (script.damage)
  {
  case Damage::none:
    break;
  case Damage::empty:
    return "";
  case Damage::truncated:
    return good.substr(0, good.size() * (script.cutAt % 100) / 100);
  case Damage::notXml:
    return "no XML & no <reply" + std::string(script.cutAt % 3, '\n') + column;
  case Damage::secondRoot:
    return good + "\n<again/>";
  case Damage::endsWithColumn:
    return "<Schema><Failed/>" + column;
  case Damage::columnEverywhere:
    return "<" + column + "s>" + column + " of " + column + "</" + column + "s>";
  }
  return good;
}

} // namespace judge
