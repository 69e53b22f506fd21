// Reading the replies of the database: as a list of values, or straight into the items.
#include <climits>
#include <cstring>
#include <memory>
#include <string_view>

#include <DasCrypt.h>
#include <expat.h>

#include "DASImportMap.h"
#include "HandleElement.h"
#include "Log.h"
#include "ServiceDataManager.h"
#include "isEncrypted.h"

namespace
{

struct FreeParser
{
  void operator()(XML_Parser parser) const
  {
    XML_ParserFree(parser);
  }
};

/// Marks the parse as running for as long as it lives, however it ends.
class RunningParse
{
public:
  RunningParse(sdm::DASReplyState& replyState, XML_Parser expat) : state(replyState)
  {
    parser.expat = expat;
    state.parser = &parser;
  }

  ~RunningParse()
  {
    state.parser = nullptr;
    state.failure = nullptr;
  }

  RunningParse(const RunningParse&) = delete;
  RunningParse& operator=(const RunningParse&) = delete;

private:
  sdm::DASReplyState& state;
  sdm::RunningParser parser;
};

/// The value of the attribute "name" among pairs of names and values, or null.
const char* nameAttribute(const char** atts)
{
  for (; atts != nullptr && *atts != nullptr; atts += 2)
  {
    if (std::strcmp(*atts, "name") == 0)
      return atts[1];
  }
  return nullptr;
}

void logParserError(XML_Error error, XML_Size line)
{
  SDM_LOG(2, "parser error [%s] at [%ld]\n", XML_ErrorString(error), static_cast<long>(line));
}

} // namespace

bool ServiceDataManager::parseXMLDasReply(std::string& text, bool importMode, std::string* values)
{
  SDM_TRACE(5, "parseXMLDasReply \"%s\"", text.c_str());
  sdm::DASReplyState& state = *reply;
  state.importMode = importMode;
  state.values.clear();
  state.columnSeen = false;
  if (!runParser(text))
    return false;
  const bool read = state.kind == "read_response";
  if (!read && state.kind != "update_response")
    return false;
  if (read && !state.columnSeen)
    return false;
  if (values != nullptr)
    *values = state.values;
  return true;
}

bool ServiceDataManager::runParser(const std::string& text)
{
  const std::unique_ptr<XML_ParserStruct, FreeParser> parser(XML_ParserCreate(nullptr));
  if (parser == nullptr || text.size() > INT_MAX)
  {
    logParserError(XML_ERROR_NO_MEMORY, 0);
    return false;
  }
  XML_SetElementHandler(parser.get(), DASStartElementHandler, DASEndElementHandler);
  XML_SetCharacterDataHandler(parser.get(), DASCharacterDataHandler);
  XML_SetUserData(parser.get(), this);

  const RunningParse running(*reply, parser.get());
  const XML_Status status = XML_Parse(parser.get(), text.data(), static_cast<int>(text.size()), 1);
  if (reply->failure != nullptr)
    std::rethrow_exception(reply->failure);
  if (status != XML_STATUS_OK)
    logParserError(XML_GetErrorCode(parser.get()), XML_GetCurrentLineNumber(parser.get()));
  return status == XML_STATUS_OK;
}

void ServiceDataManager::startElementHandler(const char* name, const char** atts)
{
  const std::string_view element = name;
  reply->characters.clear();
  if (element == "Schema")
  {
    const char* schema = nameAttribute(atts);
    if (schema == nullptr)
      return;
    reply->schema = schema;
    if (reply->parser != nullptr)
      reply->parser->map = nullptr;
    reply->indexColumn = dasImportMap ? dasImportMap->getDasIndexName(reply->schema) : std::string();
    reply->indexValue.clear();
  }
  else if (element == "ReasonForMessage")
  {
    reply->kind.clear();
  }
}

void ServiceDataManager::characterDataHandler(const char* s, int len)
{
  reply->characters.append(s, static_cast<std::size_t>(len));
}

void ServiceDataManager::endElementHandler(const char* name)
{
  const std::string_view element = name;
  if (element == "ReasonForMessage")
  {
    reply->kind = reply->characters;
    return;
  }
  if (element == "Schema" || element == "Context" || element == "Entry")
    return;
  reply->columnSeen = true;
  if (reply->importMode)
    importColumn(name);
  else
    collectColumn();
}

void ServiceDataManager::collectColumn()
{
  if (!reply->values.empty())
    reply->values += ',';
  reply->values += reply->characters;
}

ManagedDataItem* ServiceDataManager::importedItem(sdm::RunningParser& parser, const char* column) const
{
  if (dasImportMap == nullptr)
    return nullptr;
  // Looked up once a schema, unless a callback loads another map meanwhile.
  if (parser.map != dasImportMap.get())
  {
    const auto found = dasImportMap->getSchemaMap().find(reply->schema);
    parser.map = dasImportMap.get();
    parser.cursor.start(found != dasImportMap->getSchemaMap().end() ? &found->second.items : nullptr);
  }
  return parser.cursor.find(column, reply->indexValue);
}

void ServiceDataManager::importColumn(const char* column)
{
  if (column == reply->indexColumn)
  {
    reply->indexValue = reply->characters;
    if (reply->parser != nullptr)
      reply->parser->cursor.startRow();
    return;
  }
  sdm::RunningParser outside;
  sdm::RunningParser& parser = reply->parser != nullptr ? *reply->parser : outside;
  ManagedDataItem* item = importedItem(parser, column);
  if (item == nullptr || item->setter == nullptr)
    return;

  // While starting up every value counts. Later on an item that can tell its value is only set when that
  // changes, and an empty cell means that the value was taken away: back to the default.
  std::string& error = parser.error;
  error = "no setter available";
  const bool starting = startup;
  const bool empty = reply->characters.empty();
  if (!starting && item->getter != nullptr)
    setSingleChangedDataItem(item, empty ? item->defaultValue : decryptData(item), error);
  else if (starting || !empty)
    setSingleDataItem(item, decryptData(item), error);
}

std::string ServiceDataManager::decryptData(ManagedDataItem* item)
{
  std::string value = reply->characters;
  if (!sdm::isEncrypted(*item) || value.empty())
    return value;
  const std::string encrypted = value;
  if (!DasCrypt::fromEncryptedText(encrypted, value))
    SDM_LOG(2, "decryptData failed to base64decode data item");
  return value;
}
