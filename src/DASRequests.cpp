#include "DASRequests.h"

#include "ServiceDataManagerIfc.h"
#include "createXmlElement.h"

namespace sdm
{

const char* const schemaEnd = "</Schema>";

namespace
{

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

std::string updateCellGroup(const ManagedDataItem& item, const std::string& cell)
{
  std::string group = createXmlElement(item.dasItem, cell);
  if (!item.dasIndexName.empty())
    group = createXmlElement("Entry", createXmlElement(item.dasIndexName, item.dasIndexValue) + group);
  return group;
}

std::string updateCellRequest(const ManagedDataItem& item, const std::string& cell)
{
  return beginUpdateRequest(item.dasSchema) + updateCellGroup(item, cell) + schemaEnd;
}

} // namespace sdm
