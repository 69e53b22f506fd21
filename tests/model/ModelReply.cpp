// How a reply of the database is read: first into a list of what stands in it, then one after the other.
#include <cstdlib>

#include <expat.h>

#include <DasCrypt.h>

#include "Model.h"

namespace judge
{

namespace
{

struct Mark
{
  enum
  {
    start,
    text,
    end
  } what;
  std::string name;
  std::vector<std::string> attributes;
};

using Marks = std::vector<Mark>;

void XMLCALL onStart(void* marks, const char* name, const char** attributes)
{
  Mark mark{Mark::start, name, {}};
  for (; *attributes != nullptr; ++attributes)
    mark.attributes.emplace_back(*attributes);
  static_cast<Marks*>(marks)->push_back(mark);
}

void XMLCALL onText(void* marks, const char* text, int length)
{
  static_cast<Marks*>(marks)->push_back({Mark::text, std::string(text, static_cast<std::size_t>(length)), {}});
}

void XMLCALL onEnd(void* marks, const char* name)
{
  static_cast<Marks*>(marks)->push_back({Mark::end, name, {}});
}

/// Everything up to the end or the error; the error as it is logged, empty when there is none.
std::string read(const std::string& reply, Marks& marks)
{
  XML_Parser parser = XML_ParserCreate(nullptr);
  XML_SetElementHandler(parser, onStart, onEnd);
  XML_SetCharacterDataHandler(parser, onText);
  XML_SetUserData(parser, &marks);
  std::string error;
  if (XML_Parse(parser, reply.data(), static_cast<int>(reply.size()), 1) != XML_STATUS_OK)
    error = std::string("parser error [") + XML_ErrorString(XML_GetErrorCode(parser)) + "] at [" +
            std::to_string(XML_GetCurrentLineNumber(parser)) + "]\n";
  XML_ParserFree(parser);
  return error;
}

} // namespace

bool Model::parse(const std::string& text, bool importing, std::string* values)
{
  trace(5, "parseXMLDasReply \"%s\"", text.c_str());
  reply.collected.clear();
  reply.columnSeen = false;
  Marks marks;
  const std::string error = read(text, marks);
  reply.running = true;
  try
  {
    for (const Mark& mark : marks)
    {
      if (mark.what == Mark::start)
        started(mark.name, mark.attributes);
      else if (mark.what == Mark::text)
        reply.buffer += mark.name;
      else
        ended(mark.name, importing);
    }
  }
  catch (...)
  {
    reply.running = false;
    throw;
  }
  reply.running = false;
  if (!error.empty())
  {
    say(2, "%s", error.c_str());
    return false;
  }
  const bool answered = reply.kind == "update_response" || (reply.kind == "read_response" && reply.columnSeen);
  if (answered && values != nullptr)
    *values = reply.collected;
  return answered;
}

void Model::started(const std::string& name, const std::vector<std::string>& attributes)
{
  reply.buffer.clear();
  if (name == "ReasonForMessage")
    reply.kind.clear();
  if (name != "Schema")
    return;
  for (std::size_t at = 0; at + 1 < attributes.size(); at += 2)
  {
    if (attributes[at] != "name")
      continue;
    reply.schema = attributes[at + 1];
    const auto known = dasImport.find(reply.schema);
    reply.indexColumn = known == dasImport.end() ? "" : known->second.indexName;
    reply.indexValue.clear();
    return;
  }
}

void Model::ended(const std::string& name, bool importing)
{
  if (name == "ReasonForMessage")
    reply.kind = reply.buffer;
  if (name == "ReasonForMessage" || name == "Schema" || name == "Context" || name == "Entry")
    return;
  reply.columnSeen = true;
  if (!importing)
    reply.collected += (reply.collected.empty() ? "" : ",") + reply.buffer;
  else if (name == reply.indexColumn)
    reply.indexValue = reply.buffer;
  else
    importColumn(name);
}

void Model::importColumn(const std::string& column)
{
  const auto schema = dasImport.find(reply.schema);
  if (schema == dasImport.end())
    return;
  const auto found = schema->second.items.find({column, reply.indexValue});
  if (found == schema->second.items.end())
    return;
  const Item item = found->second;
  if (startup)
    setSingle(item, decrypted(*item));
  else if (reply.buffer.empty() && item->getter != nullptr)
    setSingleChanged(item, item->defaultValue);
  else if (!reply.buffer.empty() && item->getter != nullptr)
    setSingleChanged(item, decrypted(*item));
  else if (!reply.buffer.empty())
    setSingle(item, decrypted(*item));
}

void Model::setSingle(const Item& item, const std::string& value)
{
  std::string error = "no setter available";
  const bool accepted = callSetter(*item, value, error);
  if (!accepted && error.find("NOT_CHANGED") == std::string::npos)
    trace(3, "setSingleDataItem set \"%s\" failed \"%s\"", item->rootId.c_str(), error.c_str());
  if (!item->isGroupItem.empty())
    flag(item->isGroupItem);
}

void Model::setSingleChanged(const Item& item, const std::string& value)
{
  if (item->getter->getValue(item->dasIndexValue) == value)
    return;
  setSingle(item, value);
  changed.push_back(item);
}

std::string Model::decrypted(const ManagedDataItem& item)
{
  std::string value = reply.buffer;
  if (item.dasEncrypted != "true" || value.empty())
    return value;
  if (!DasCrypt::fromEncryptedText(reply.buffer, value))
    say(2, "decryptData failed to base64decode data item");
  return value;
}

} // namespace judge
