// The victim: a device with the sample service that is told to change this and that, step by step, and says of each
// step when it was answered as done. With "state" it tells what a device's files hold instead.
#include <DasCrypt.h>
#include <ManageableData.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "device/RunningDevice.h"

namespace
{
using Values = std::vector<std::pair<std::string, std::string>>;

constexpr const char* bulkSchema = "Bulk";

/// One write, so that a line is told whole or not at all. In a rehearsal the next step waits for an answer.
void tell(const std::string& step)
{
  const std::string line = step + "\n";
  if (::write(STDOUT_FILENO, line.data(), line.size()) != static_cast<ssize_t>(line.size()))
    std::_Exit(3);
  char answer = 0;
  if (std::getenv("REHEARSAL") != nullptr && ::read(STDIN_FILENO, &answer, 1) != 1)
    std::_Exit(3);
}

void require(bool done, const std::string& what)
{
  if (!done)
    throw std::runtime_error(what + " was not done");
}

void set(cli::RunningDevice& running, const Values& values)
{
  ManageableData data;
  for (const auto& [rootId, value] : values)
    data.populate(rootId, rootId, value);
  require(running.service().set(data), "a set request");
}

/// Values of several schemas, of both groups and of encrypted items; other ones for each number.
Values valuesOf(int number)
{
  const std::string digit = std::to_string(number);
  return {{"ip.address", "10.0." + digit + ".5"},
          {"ip.gateway", "10.0." + digit + ".1"},
          {"ip.netmask", "255.255.255.0"},
          {"transport.rtpFirstPort", "2" + digit + "000"},
          {"transport.rtpLastPort", "2" + digit + "100"},
          {"sip.userName", "user" + digit},
          {"sip.password", "opensesame" + digit},
          {"line.pin-1", "4711" + digit},
          {"line.pin-2", "4712" + digit},
          {"line.label-1", "Line " + digit},
          {"snmp.readCommunity", "community" + digit},
          {"display.banner", "Banner " + digit},
          {"display.brightness", "4" + digit},
          {"time.zone", "Zone/Number" + digit}};
}

void fillBulk(cli::RunningDevice& running, char filling)
{
  std::string entries;
  for (const char* row : {"1", "2"})
    entries += std::string("<Entry><Idx>") + row + "</Idx><A>" + std::string(5000, filling) + "</A><B>" +
               std::string(3000, filling) + "</B></Entry>";
  const std::string request = std::string("<Schema name=\"") + bulkSchema +
                              "\"><ReasonForMessage>update_request</ReasonForMessage>" + entries + "</Schema>";
  require(running.device().das().sendRequest(request.data(), request.size()).find("update_response") !=
              std::string::npos,
          "a large update");
}

void firstLife(const cli::RunSettings& settings)
{
  cli::RunningDevice running(settings);
  host::LocalMgmtStore& store = running.device().store();
  tell("up");
  set(running, valuesOf(1));
  tell("set");
  running.restart();
  tell("publication");
  store.change("phone.room", "4.12");
  tell("change");
  store.lockItem("display.contrast");
  tell("lock");
  store.unlockItem("display.contrast");
  tell("unlock");
  store.defineDictionary("Keys", {{"/item[1]/rootId", "a"}, {"/item[2]/rootId", "b"}});
  tell("dictionary");
  set(running, valuesOf(2));
  tell("second set");
  require(running.service().resetUserData(), "a reset");
  tell("reset");
  running.device().das().provision({{bulkSchema, "Idx", {"A", "B"}, {"1", "2"}}});
  tell("provisioning");
  fillBulk(running, 'x');
  tell("large update");
  set(running, valuesOf(3));
  tell("third set");
}

void secondLife(const cli::RunSettings& settings)
{
  cli::RunningDevice running(settings);
  tell("up again");
  set(running, valuesOf(4));
  tell("fourth set");
  fillBulk(running, 'y');
  tell("second large update");
}

/// One line a value: what changes only as a whole, then name and value.
void tellValue(const std::string& whole, const std::string& name, const std::string& value)
{
  std::cout << whole << '\t' << name << '\t' << value << '\n';
}

std::string plain(const cli::RunningDevice& running, const host::SchemaDefinition& schema, const std::string& column,
                  const std::string& cell)
{
  for (const cli::MapItem& item : running.items().items())
  {
    std::string text;
    if (item.encrypted && item.schema == schema.name && item.column == column)
      return cell.empty() || DasCrypt::fromEncryptedText(cell, text) ? text : "(cannot be decrypted)";
  }
  return cell;
}

void tellSchema(cli::RunningDevice& running, const host::SchemaDefinition& schema)
{
  const std::vector<std::string> rows = schema.indexColumn.empty() ? std::vector<std::string>{""} : schema.indexValues;
  for (const std::string& row : rows)
    for (const std::string& column : schema.columns)
      if (const auto cell = running.device().das().storedCell(schema.name, column, schema.indexColumn, row))
        tellValue("das " + schema.name, column + "/" + row, plain(running, schema, column, *cell));
}

void tellState(cli::RunningDevice& running)
{
  host::LocalMgmtStore& store = running.device().store();
  for (const host::SchemaDefinition& schema : running.device().das().schemas())
    tellSchema(running, schema);
  for (const std::string& rootId : running.items().rootIds())
    if (const auto value = store.value(rootId))
      tellValue("store", rootId, *value);
  for (const std::string& rootId : store.lockedItems())
    tellValue("locks", rootId, "locked");
  ManageableData data;
  data.setRootId("Keys", &store);
  std::string value;
  if (store.lookupData(data))
    for (const char* key : {"/item[1]/rootId", "/item[2]/rootId"})
      tellValue("dictionary", key, data.interogate("Keys", key, value) ? value : "(missing)");
}

/// What the files hold, and that the service takes a request on top of it.
void tellAndGoOn(const cli::RunSettings& settings)
{
  cli::RunningDevice running(settings);
  require(running.summary().registered && running.summary().platform.failures.empty(), "a clean start");
  tellState(running);
  set(running, valuesOf(9));
}
} // namespace

int main(int count, char** arguments)
{
  if (count != 4)
    return 2;
  try
  {
    cli::RunSettings settings;
    settings.service = SDM_SAMPLE_SERVICE;
    settings.device = arguments[2];
    settings.map = arguments[3];
    if (std::string(arguments[1]) == "state")
    {
      tellAndGoOn(settings);
      return 0;
    }
    firstLife(settings);
    tell("down");
    secondLife(settings);
    tell("down again");
    return 0;
  }
  catch (const std::exception& error)
  {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
