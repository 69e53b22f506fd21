#include "ReplyModel.h"

#include <DasCrypt.h>

#include "Trace.h"

namespace fuzz
{

namespace
{

std::string call(const char* what, const ModelItem& item, const std::string& arguments)
{
  return std::string(what) + " " + item.rootId + "(" + arguments + recording::quoted(item.row) + ")";
}

} // namespace

ReplyModel::ReplyModel(std::vector<ModelItem> itsItems, std::map<std::string, std::string> itsIndexColumns,
                       std::string itsLiveValue)
    : items(std::move(itsItems)), indexColumns(std::move(itsIndexColumns)), liveValue(std::move(itsLiveValue))
{
}

bool ReplyModel::read(const std::string& reply, Mode mode)
{
  columnSeen = false;
  collected.clear();
  const XmlReading reading = readXml(reply);
  for (const XmlEvent& event : reading.events)
  {
    if (event.kind == XmlEvent::Kind::start)
      start(event);
    else if (event.kind == XmlEvent::Kind::end)
      end(event.text, mode);
    else
      buffer += event.text;
  }
  if (!reading.wellFormed)
    trace.emplace_back("log 2 parser error");
  return reading.wellFormed && (kind == "update_response" || (kind == "read_response" && columnSeen));
}

void ReplyModel::start(const XmlEvent& event)
{
  buffer.clear();
  if (event.text == "ReasonForMessage")
    kind.clear();
  if (event.text != "Schema" || !event.nameAttribute)
    return;
  schema = *event.nameAttribute;
  row.clear();
}

void ReplyModel::end(const std::string& name, Mode mode)
{
  if (name == "ReasonForMessage")
    kind = buffer;
  if (name == "ReasonForMessage" || name == "Schema" || name == "Entry" || name == "Context")
    return;
  columnSeen = true;
  if (mode == Mode::collect)
  {
    collected += (collected.empty() ? "" : ",") + buffer;
    return;
  }
  const auto index = indexColumns.find(schema);
  if (index != indexColumns.end() && index->second == name)
  {
    row = buffer;
    return;
  }
  for (const ModelItem& item : items)
    if (item.setter && item.schema == schema && item.column == name && item.row == row)
      import(item, mode);
}

void ReplyModel::import(const ModelItem& item, Mode mode)
{
  const bool compares = mode == Mode::laterStart && item.getter;
  if (buffer.empty() && mode == Mode::laterStart && !item.getter)
    return;
  const std::string wanted = buffer.empty() && compares ? item.defaultValue : value(item);
  if (compares)
    trace.push_back(call("get", item, ""));
  if (!compares || wanted != liveValue)
    trace.push_back(call("set", item, recording::quoted(wanted) + ", "));
}

std::string ReplyModel::value(const ModelItem& item)
{
  std::string text = buffer;
  if (!item.encrypted || text.empty())
    return text;
  trace.push_back("fromEncryptedText(" + recording::quoted(buffer) + ")");
  if (!DasCrypt::fromEncryptedText(buffer, text))
    trace.emplace_back("log 2 decryptData failed");
  return text;
}

} // namespace fuzz
