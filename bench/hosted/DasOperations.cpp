// What the host's database takes for one request, without the manager: tables of ten columns, as schemas mostly have.
#include <filesystem>
#include <stdexcept>
#include <utility>

#include <host/DataAccessService.h>

#include "DasOperations.h"

namespace bench
{

namespace
{

constexpr std::size_t columnCount = 10;
constexpr std::size_t schemaCount = 10;

std::string element(const std::string& name, const std::string& content)
{
  return "<" + name + ">" + content + "</" + name + ">";
}

std::string schemaName(std::size_t number)
{
  return "NetworkSettings" + std::to_string(number);
}

std::string columnName(std::size_t number)
{
  return "Setting" + std::to_string(number);
}

std::string request(const std::string& schema, const char* kind, const std::string& content)
{
  return R"(<?xml version="1.0" encoding="utf-8"?><Schema name=")" + schema + "\">" +
         element("ReasonForMessage", kind) + content + "</Schema>";
}

std::string update(const std::string& schema, const std::string& content)
{
  return request(schema, "update_request", content);
}

std::string cells(std::size_t count, const char* value)
{
  std::string all;
  for (std::size_t i = 0; i < count; ++i)
    all += element(columnName(i), value);
  return all;
}

/// As the manager writes the cells of a row: an entry for each of them.
std::string entries(std::size_t count, const char* value)
{
  std::string all;
  for (std::size_t i = 0; i < count; ++i)
    all += element("Entry", element("Line", "1") + element(columnName(i), value));
  return all;
}

/// Ten schemas without rows and one with them, every cell written.
class Database
{
public:
  Database()
  {
    for (const char* file : {"das.db", "das.db-wal", "das.db-shm"})
      std::filesystem::remove(file);
    das = std::make_unique<host::DataAccessService>("das.db");
    std::vector<std::string> columns;
    for (std::size_t i = 0; i < columnCount; ++i)
      columns.push_back(columnName(i));
    std::vector<host::SchemaDefinition> schemas = {{"Rows", "Line", columns, {"1", "2", "3"}}};
    for (std::size_t i = 0; i < schemaCount; ++i)
      schemas.push_back({schemaName(i), "", columns, {}});
    das->provision(schemas);
    for (std::size_t i = 0; i < schemaCount; ++i)
      send(update(schemaName(i), cells(columnCount, liveValue)));
    send(update("Rows", entries(columnCount, liveValue)));
  }

  void send(const std::string& text)
  {
    const std::string reply = das->sendRequest(text.data(), text.size());
    // Cheaply, since it is counted: what is no "error_response" is a "read_response" or an "update_response".
    if (const std::size_t kind = reply.find('_'); kind == std::string::npos || reply[kind - 1] == 'r')
      throw std::runtime_error("refused: " + reply);
  }

private:
  std::unique_ptr<host::DataAccessService> das;
};

using Requests = std::vector<std::string>;

/// Sends one list and then the other in turn, so that each run changes what the database holds.
Scenario inTurn(const char* name, std::size_t units, const Requests& first, const Requests& second)
{
  return {name,
          {},
          false,
          [=](const Shape&) -> Run
          {
            const auto database = std::make_shared<Database>();
            return {nullptr,
                    [database, next = first, other = second]() mutable
                    {
                      for (const std::string& text : next)
                        database->send(text);
                      next.swap(other);
                    },
                    units};
          }};
}

Scenario reading(const char* name, std::size_t units, const std::string& schema, const std::string& content)
{
  const Requests requests = {request(schema, "read_request", content)};
  return inTurn(name, units, requests, requests);
}

/// `makeContent(VALUE)` into as many schemas as `schemas` says.
Scenario writing(const char* name, std::size_t units, std::size_t schemas,
                 const std::function<std::string(const char*)>& makeContent)
{
  Requests first;
  Requests second;
  for (std::size_t i = 0; i < schemas; ++i)
  {
    first.push_back(update(schemaName(i), makeContent(newValue)));
    second.push_back(update(schemaName(i), makeContent(nextValue)));
  }
  return inTurn(name, units, first, second);
}

} // namespace

std::vector<Scenario> dasOperations()
{
  const auto one = [](const char* value) { return cells(1, value); };
  const auto ten = [](const char* value) { return cells(10, value); };
  return {
      reading("das/get/1", 1, schemaName(0), element("ResultCols", columnName(1))),
      reading("das/get/row", 1, "Rows", element("ResultCols", columnName(1)) + element("Entry", element("Line", "1"))),
      reading("das/get/schema", columnCount, schemaName(0), ""),
      writing("das/set/1in1", 1, 1, one),
      writing("das/set/10in1", 10, 1, ten),
      writing("das/set/10in10", 10, 10, one),
      writing("das/set/100in10", 100, 10, ten),
      inTurn("das/set/10inrow", 10, {update("Rows", entries(10, newValue))}, {update("Rows", entries(10, nextValue))})};
}

} // namespace bench
