// Requests to the host's database, judged by a plain model of its tables: the answer, and what the tables hold behind
// it. An input is a list of requests.
#include <memory>

#include "Fuzz.h"
#include "RequestModel.h"
#include "Tokens.h"
#include "host/DataAccessService.h"

namespace
{

const fuzz::Grammar& grammar()
{
  static const fuzz::Grammar rules = {
      {"input", {"{request}", "{request}\x1e{input}"}},
      {"request",
       {"{head}<Schema name=\"{schema}\">{read}</Schema>", "{head}<Schema name=\"S\">{update}{entries}</Schema>",
        "{head}<Schema name=\"T\">{update}{cells}</Schema>"}},
      {"head", {"", R"(<?xml version="1.0" encoding="utf-8"?>)"}},
      {"schema", {"S", "T", "s", "U"}},
      {"read",
       {"<ReasonForMessage>read_request</ReasonForMessage>",
        "<ReasonForMessage>read_request</ReasonForMessage><ResultCols>{column}</ResultCols>",
        "<ReasonForMessage>read_request</ReasonForMessage><ResultCols>{column}</ResultCols><Entry>{index}</Entry>"}},
      {"update", {"<ReasonForMessage>update_request</ReasonForMessage>"}},
      {"entries", {"", "<Entry>{index}{cells}</Entry>", "<Entry>{index}{cells}</Entry>{entries}"}},
      {"index", {"<Idx>{row}</Idx>"}},
      {"row", {"1", "2", "3", "", "{text}"}},
      {"column", {"C", "D", "c", "Idx", "E", "\"x\" = 1"}},
      {"cells",
       {"<C>{text}</C>", "<D>{text}</D>", "{cells}{cells}", "<C>{text}</C><D>{text}</D>", "<c>{text}</c>", "{index}",
        "<C{attribute}>{text}</C>", "<Context/>"}},
      {"attribute", {" a=\"1\"", " name='x' b=''"}},
      {"text",
       {"", "v", "a&amp;b", "&#13;&#10;", "<![CDATA[<x>&]]>", "<!-- no -->", "\r\n", " \t", "\xC3\xA4",
        "'; DROP TABLE S; --", "&#xFFFF;", "\xF0\x9F\x98\x80", "&quot;"}},
  };
  return rules;
}

std::vector<fuzz::ModelTable> newTables()
{
  return {{"S", "Idx", {"C", "D", "c"}, {{"1", {}}, {"2", {}}}}, {"T", "", {"C", "D"}, {}}};
}

std::unique_ptr<host::DataAccessService> newDatabase()
{
  auto database = std::make_unique<host::DataAccessService>(":memory:");
  std::vector<host::SchemaDefinition> schemas;
  for (const fuzz::ModelTable& table : newTables())
  {
    host::SchemaDefinition& schema = schemas.emplace_back();
    schema.name = table.schema;
    schema.indexColumn = table.indexColumn;
    schema.columns = table.columns;
    for (const auto& row : table.rows)
      schema.indexValues.push_back(row.first);
  }
  database->provision(schemas);
  return database;
}

std::string content(host::DataAccessService& database, const std::string& schema)
{
  const std::string request =
      "<Schema name=\"" + schema + "\"><ReasonForMessage>read_request</ReasonForMessage></Schema>";
  return fuzz::RequestModel::described(database.sendRequest(request.data(), request.size()));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  // A new one only when the last input changed it.
  static std::unique_ptr<host::DataAccessService> database;
  if (database == nullptr)
    database = newDatabase();
  fuzz::RequestModel model(newTables());
  bool judged = true;
  bool changed = false;
  for (const std::string& request : fuzz::parts(fuzz::textOf(data, size), fuzz::nextMessage))
  {
    const std::string reply = database->sendRequest(request.data(), request.size());
    const std::string answer = fuzz::RequestModel::described(reply);
    changed = changed || answer == "update_response\n";
    // From a change on that the model did not follow, only replies as such are judged.
    judged = judged && (fuzz::RequestModel::canJudge(request) || answer != "update_response\n");
    if (!judged || !fuzz::RequestModel::canJudge(request))
      continue;
    fuzz::requireEqual(answer, model.answer(request), "a request gets the answer it deserves");
    for (const fuzz::ModelTable& table : model.tables)
      fuzz::requireEqual(content(*database, table.schema), fuzz::RequestModel::wholeTable(table),
                         "the tables hold what requests have put there, and nothing else");
  }
  if (changed)
    database.reset();
  return 0;
}

std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned int seed)
{
  return fuzz::mutate(grammar(), fuzz::xmlDelimiters, data, size, maxSize, seed);
}
