// The services of the load.
#include <cstring>
#include <list>
#include <stdexcept>

#include <DasCrypt.h>
#include <ManageableData.h>

#include "Callbacks.h"
#include "Items.h"
#include "Values.h"
#include "World.h"

namespace threads
{
namespace
{

/// The text of the first element of this name in `xml` behind `from`; empty when there is none.
std::string textOf(const std::string& xml, const std::string& element)
{
  const std::size_t begin = xml.find("<" + element + ">");
  if (begin == std::string::npos)
    return "";
  const std::size_t text = begin + element.size() + 2;
  return xml.substr(text, xml.find("</" + element + ">", text) - text);
}

std::string element(const std::string& name, const std::string& text)
{
  return "<" + name + ">" + text + "</" + name + ">";
}

std::string reply(const std::string& schema, const std::string& kind, const std::string& body)
{
  return "<Schema name=\"" + schema + "\">" + element("ReasonForMessage", kind) + body + "</Schema>";
}

/// Takes the first element out of `xml`; its name is empty when there is none.
std::pair<std::string, std::string> takeElement(std::string& xml)
{
  const std::size_t end = xml.find('>');
  if (end == std::string::npos)
    return {};
  const std::string name = xml.substr(1, end - 1);
  const std::size_t close = xml.find("</" + name + ">");
  std::pair<std::string, std::string> taken(name, xml.substr(end + 1, close - end - 1));
  xml.erase(0, close + name.size() + 3);
  return taken;
}

} // namespace

std::string Das::sendRequest(const char* request, size_t length)
{
  const std::string text(request, length);
  const std::size_t name = text.find("name=\"") + 6;
  const std::string schema = text.substr(name, text.find('"', name) - name);
  const std::string kind = textOf(text, "ReasonForMessage");
  switch (weather.das)
  {
  case Weather::throws:
    throw std::runtime_error("the database is away");
  case Weather::silent:
    return "";
  case Weather::garbled:
    return "<Schema name=\"" + schema + "\"><ReasonForMessage>read_resp";
  default:
    break;
  }
  if (kind == "read_request")
    return read(schema, text);
  const std::size_t body = text.find("</ReasonForMessage>") + std::strlen("</ReasonForMessage>");
  update(schema, text.substr(body, text.rfind("</Schema>") - body));
  return reply(schema, "update_response", "");
}

std::string Das::read(const std::string& schema, const std::string& request) const
{
  const std::string wanted = textOf(request, "ResultCols");
  const std::string row = textOf(request, "Id");
  std::string body;
  for (const Item& item : items())
  {
    const auto cell = cells.find(item.rootId);
    if (item.schema != schema || cell == cells.end() || (!wanted.empty() && item.column != wanted) ||
        (!row.empty() && item.row != row))
      continue;
    const std::string column = element(item.column, cell->second);
    body += item.row.empty() ? column : element("Entry", element("Id", item.row) + column);
  }
  return reply(schema, "read_response", body);
}

void Das::update(const std::string& schema, const std::string& body)
{
  std::string rest = body;
  ++updates;
  for (auto [name, text] = takeElement(rest); !name.empty(); std::tie(name, text) = takeElement(rest))
  {
    std::string row;
    if (name == "Entry")
    {
      row = takeElement(text).second;
      std::tie(name, text) = takeElement(text);
    }
    store(schema, name, row, text);
  }
}

/// Setter and database belong to one operation, so the value that comes here is the one that is live; but for a reset,
/// which writes the default before it applies it.
void Das::store(const std::string& schema, const std::string& column, const std::string& row, const std::string& cell)
{
  const Item* item = findCell(schema, column, row);
  if (item == nullptr)
    return violations.add("an update of " + schema + "." + column + ", which nobody has");
  std::string value = cell;
  if (item->encrypted && !DasCrypt::fromEncryptedText(cell, value))
    violations.add(item->rootId + " came to the database unencrypted");
  const bool reset = item->userData && value == "default";
  const bool special = verbOf(value) == "callback" || verbOf(value) == "renew";
  violations.expect(reset || special || live[item->rootId] == value,
                    item->rootId + " is " + live[item->rootId] + ", but " + value + " came to the database");
  if (special)
    return;
  cells[item->rootId] = cell;
}

bool Store::works() const
{
  if (weather.store == Weather::throws)
    throw std::runtime_error("the local store is away");
  return weather.store == Weather::fine;
}

bool Store::registerService(const std::string&, MgmtAgentIfc*, int)
{
  ++registrations;
  return works();
}

bool Store::lookupData(ManageableData& data)
{
  if (!works())
    return false;
  const std::string dictionary = data.getRootId();
  if (!dictionary.empty())
  {
    for (std::size_t number = 1; number <= items().size(); ++number)
    {
      for (const char* key : {"rootId", "dasSchema", "dasItem", "dasIndexName", "dasIndexValue", "setter", "getter",
                              "default", "userData", "isGroupItem", "dasEncrypted"})
      {
        const std::string entry = "/item[" + std::to_string(number) + "]/" + key;
        data.populate(dictionary, entry, dictionaryEntry(entry));
      }
    }
    return true;
  }
  std::vector<std::string> wanted;
  data.getRootIds(wanted);
  for (const std::string& rootId : wanted)
    data.populate(rootId, rootId, "default");
  return true;
}

bool Store::subscribe(std::list<std::string>&, MgmtAgentIfc*)
{
  return works();
}

/// What is published is what the service works with.
bool Store::publishData(ManageableData& data)
{
  if (!works())
    return false;
  std::vector<std::string> wanted;
  data.getRootIds(wanted);
  for (const std::string& rootId : wanted)
  {
    std::string value;
    data.interogate(rootId, rootId, value);
    const auto now = live.find(rootId);
    violations.expect(value == (now == live.end() ? "default" : now->second), rootId + " is published as " + value);
    published[rootId] = value;
  }
  return true;
}

bool Store::checkData(ManageableData&, void*)
{
  return works();
}

void SecurityLog::logSecurityEvent(time_t, int, int, int, int, bool, std::string, std::string, std::string)
{
  if (weather.securityLog == Weather::throws)
    throw std::runtime_error("the security log is away");
  ++records;
}

void Validator::stage(const std::string& rootId, const std::string& value)
{
  staged[rootId] = value;
}

/// One operation's values alone.
bool Validator::validateGroup(std::string& reason, const std::string&)
{
  bool good = true;
  for (const auto& [rootId, value] : staged)
  {
    const std::string& first = staged.begin()->second;
    violations.expect(requestOf(value) == requestOf(first), "a group of " + first + " and " + value);
    if (verbOf(value) == "badgroup")
      good = false;
  }
  if (!good)
    reason = groupRefusalOf(requestOf(staged.begin()->second));
  else
    for (const auto& [rootId, value] : staged)
      live[rootId] = value;
  return good;
}

std::vector<std::pair<std::string, std::string>> Validator::getValidGroupItems(const std::string&)
{
  return {staged.begin(), staged.end()};
}

void Validator::clearGroup(const std::string&)
{
  staged.clear();
}

void Validator::reloadGroup(const std::string&)
{
}

} // namespace threads
