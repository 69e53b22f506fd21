#include "Composite.h"

#include <DataAccessServiceIfc.h>
#include <ManageableData.h>

namespace bench
{

namespace
{

void ignoreStart(void*, const char*, const char**)
{
}

void ignoreEnd(void*, const char*)
{
}

void ignoreText(void*, const char*, int)
{
}

Composite& composite(void* pointer)
{
  return *static_cast<Composite*>(pointer);
}

void onStart(void* self, const char*, const char**)
{
  composite(self).text.clear();
}

void onText(void* self, const char* begin, int length)
{
  composite(self).text.append(begin, static_cast<std::size_t>(length));
}

void onEnd(void* pointer, const char* name)
{
  Composite& self = composite(pointer);
  if (name == self.indexColumn)
    self.row = self.text;
  const auto item = self.byPlace.find(self.schema + '/' + name + '/' + self.row);
  if (item != self.byPlace.end())
    item->second->setter->setValue(self.text, item->second->row, self.error);
}

void onReason(void* pointer, const char* name)
{
  Composite& self = composite(pointer);
  if (std::strcmp(name, "ReasonForMessage") == 0)
    self.reason = self.text;
}

} // namespace

void parse(const std::string& reply, void* userData, XML_StartElementHandler start, XML_EndElementHandler end,
           XML_CharacterDataHandler text)
{
  const XML_Parser parser = XML_ParserCreate(nullptr);
  XML_SetElementHandler(parser, start, end);
  XML_SetCharacterDataHandler(parser, text);
  XML_SetUserData(parser, userData);
  XML_Parse(parser, reply.data(), static_cast<int>(reply.size()), 1);
  XML_ParserFree(parser);
}

void parseOnly(const std::string& reply)
{
  parse(reply, nullptr, ignoreStart, ignoreEnd, ignoreText);
}

std::string readRequest(const std::string& schema)
{
  return "<Schema name=\"" + schema + "\"><ReasonForMessage>read_request</ReasonForMessage></Schema>";
}

Composite::Composite(const Shape& shape)
    : workload(shape),
      platform(makePlatform(workload)),
      das(dynamic_cast<DataAccessServiceIfc*>(platform->context().findService("DataAccessServiceIfc")))
{
  workload.writeFile();
}

void Composite::clear()
{
  items.clear();
  byRootId.clear();
  byPlace.clear();
}

void Composite::load()
{
  splitLines([this](const Columns& columns) { add(columns); });
}

void Composite::add(const Columns& columns)
{
  auto item = std::make_unique<PlainItem>();
  item->rootId = columns[0];
  item->schema = columns[1];
  item->column = columns[2];
  item->row = columns[4];
  item->defaultValue = columns[5];
  item->setter = setter.get();
  item->getter = getter.get();
  byRootId.emplace(item->rootId, item.get());
  if (!item->schema.empty())
    byPlace.emplace(item->schema + '/' + item->column + '/' + item->row, item.get());
  items.push_back(std::move(item));
}

void Composite::fillCache()
{
  for (const auto& item : items)
    item->setter->setValue(item->defaultValue, item->row, error);
}

void Composite::start()
{
  load();
  fillCache();
  for (const Schema& wanted : workload.schemas)
  {
    const std::string request = readRequest(wanted.name);
    schema = wanted.name;
    indexColumn = wanted.indexColumn;
    row.clear();
    parse(ask(request), this, onStart, onEnd, onText);
  }
}

void Composite::set(ManageableData& record)
{
  std::vector<std::string> rootIds;
  record.getRootIds(rootIds);
  std::map<std::string, std::string> requests;
  std::string value;
  for (const std::string& rootId : rootIds)
  {
    record.interogate(rootId, rootId, value);
    PlainItem& item = *byRootId.find(rootId)->second;
    if (!item.setter->setValue(value, item.row, error))
      continue;
    std::string& request = requests[item.schema];
    if (request.empty())
      request = "<Schema name=\"" + item.schema + "\"><ReasonForMessage>update_request</ReasonForMessage>";
    request.append("<").append(item.column).append(">").append(value);
    request.append("</").append(item.column).append(">");
  }
  for (auto& [name, request] : requests)
  {
    request += "</Schema>";
    parse(ask(request), this, onStart, onReason, onText);
    taken = reason == "update_response";
  }
}

std::string Composite::ask(const std::string& request)
{
  return das->sendRequest(request.data(), request.size());
}

} // namespace bench
