#include "DASRequests.h"

#include "ServiceDataManagerIfc.h"
#include "createXmlElement.h"

namespace sdm
{

namespace
{

const char* const schemaEnd = "</Schema>";

/// Room for what mostly follows a request's beginning, so that the request grows once.
constexpr std::size_t usualLength = 250;

std::string beginRequest(const std::string& schema, const char* reason)
{
  std::string request;
  request.reserve(usualLength + schema.size());
  request.append(R"(<?xml version="1.0" encoding="utf-8"?><Schema name=")").append(schema);
  request.append(R"("><ReasonForMessage>)").append(reason).append("</ReasonForMessage>");
  return request;
}

/// As `createXmlElement`, written into the request's own room.
void addElement(std::string& request, const std::string& name, const std::string& value)
{
  request.append("<").append(name).append(">").append(value);
  request.append("</").append(name).append(">");
}

std::string beginColumnRequest(const ManagedDataItem& item)
{
  return beginRequest(item.dasSchema, "read_request") + createXmlElement("ResultCols", item.dasItem);
}

} // namespace

std::string readSchemaRequest(const std::string& schema)
{
  return beginRequest(schema, "read_request") + schemaEnd;
}

std::string readColumnRequest(const ManagedDataItem& item)
{
  return beginColumnRequest(item) + schemaEnd;
}

std::string readCellRequest(const ManagedDataItem& item)
{
  std::string request = beginColumnRequest(item);
  if (!item.dasIndexName.empty())
    request += createXmlElement("Entry", createXmlElement(item.dasIndexName, item.dasIndexValue));
  return request + schemaEnd;
}

std::string beginUpdateRequest(const std::string& schema)
{
  return beginRequest(schema, "update_request");
}

void addUpdateCell(std::string& request, const ManagedDataItem& item, const std::string& cell)
{
  const bool hasRow = !item.dasIndexName.empty();
  if (hasRow)
    addElement(request.append("<Entry>"), item.dasIndexName, item.dasIndexValue);
  addElement(request, item.dasItem, cell);
  if (hasRow)
    request.append("</Entry>");
}

void endUpdateRequest(std::string& request)
{
  request.append(schemaEnd);
}

std::string updateCellRequest(const ManagedDataItem& item, const std::string& cell)
{
  std::string request = beginUpdateRequest(item.dasSchema);
  addUpdateCell(request, item, cell);
  endUpdateRequest(request);
  return request;
}

} // namespace sdm
