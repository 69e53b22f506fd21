// Update requests, by schema, and the security-log records that go with them.
#include <ctime>

#include <ClientUtils.h>
#include <DASUtilsStrings.h>
#include <DasCrypt.h>

#include "Model.h"

namespace judge
{

namespace
{

bool isSensitive(const ManagedDataItem& item)
{
  for (const std::string& schema : {DASUtilsStrings::SipBaseSettingsSchema, DASUtilsStrings::SipFeatureAccessSchema,
                                    DASUtilsStrings::SipPermissionsSchema, DASUtilsStrings::SnmpSettingsSchema,
                                    DASUtilsStrings::TransportSettingsSchema})
  {
    if (item.dasSchema == schema)
      return true;
  }
  return item.dasItem == "CallForwardingAllowed";
}

std::string recordOf(const ManagedDataItem& item, const std::string& value)
{
  const std::string row = item.dasIndexName.empty() ? "" : " " + item.dasIndexName + ":" + item.dasIndexValue;
  const std::string shown = item.dasEncrypted == "true" ? "***" : ClientUtils::escapeXMLString(value);
  return item.dasSchema + row + " set " + item.dasItem + "(" + shown + ")";
}

} // namespace

void Model::addCell(Requests& requests, const ManagedDataItem& item, const std::string& value)
{
  std::string written;
  if (item.dasEncrypted == "true")
    DasCrypt::toEncryptedText(value, written);
  else
    written = ClientUtils::escapeXMLString(value);
  std::string cell = element(item.dasItem, written);
  if (!item.dasIndexName.empty())
    cell = element("Entry", element(item.dasIndexName, item.dasIndexValue) + cell);
  if (isSensitive(item))
    records.push_back(recordOf(item, value));
  trace(6, "addDASItemEntry:'%s'\n", cell.c_str());
  if (requests.count(item.dasSchema) == 0)
    requests[item.dasSchema] = "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"" + item.dasSchema +
                               "\"><ReasonForMessage>update_request</ReasonForMessage>";
  requests[item.dasSchema] += cell;
}

void Model::addValidGroup(Requests& requests, const std::string& group)
{
  if (validator == nullptr)
    return;
  const auto accepted = validator->getValidGroupItems(group);
  trace(6, "found %d valid items", static_cast<int>(accepted.size()));
  for (const auto& [rootId, value] : accepted)
  {
    const auto found = published.find(rootId);
    if (found == published.end())
    {
      say(2, "%s is NULL\n", rootId.c_str());
      continue;
    }
    const ManagedDataItem& item = *found->second;
    trace(6, "\"%s\" = \"%s\", das item name %sfound", item.dasItem.c_str(),
          ClientUtils::hidePassword(item.rootId, value).c_str(), item.dasItem.empty() ? "NOT " : "");
    if (!item.dasItem.empty())
      addCell(requests, item, value);
  }
}

/// The last schema's outcome is the result. What was sent may have been done: its records outlive an exception, and are
/// handed over as failed when the database threw.
bool Model::send(const Requests& requests, DataAccessServiceIfc* das)
{
  trace(5, "sendDASRequests");
  if (das == nullptr)
    return false;
  lastingRecords = records.size();
  bool done = false;
  try
  {
    done = sendAll(requests, *das);
  }
  catch (...)
  {
    try
    {
      handOverRecords(true);
    }
    catch (...)
    {
      // What the database threw is what the caller gets.
    }
    lastingRecords = records.size();
    throw;
  }
  handOverRecords(!done);
  return requests.empty() || done;
}

bool Model::sendAll(const Requests& requests, DataAccessServiceIfc& das)
{
  bool done = false;
  for (const auto& entry : requests)
  {
    const std::string request = entry.second + "</Schema>";
    trace(5, "sendDASRequests sending request \"%s\"", request.c_str());
    const std::string answer = das.sendRequest(request.c_str(), request.size());
    done = parse(answer, false, nullptr);
    if (!done)
      say(2, "sendDASRequests bad XML reply from DataAccessService \"%s\"", answer.c_str());
    trace(5, "sendDASRequests received reply \"%s\"", answer.c_str());
  }
  return done;
}

/// Every record is handed over once, even if the security log throws at one of them.
void Model::handOverRecords(bool failed)
{
  if (records.empty())
    return;
  SecurityLogServiceIfc* const log = service(securityLogFound, "SecurityLogServiceIfc");
  if (log == nullptr)
    return;
  const std::vector<std::string> handed = std::move(records);
  records.clear();
  lastingRecords = 0;
  const time_t now = std::time(nullptr);
  std::exception_ptr thrown;
  for (const std::string& record : handed)
  {
    try
    {
      log->logSecurityEvent(now, 4, 1, 5, 3, failed, record, "", "");
    }
    catch (...)
    {
      if (thrown == nullptr)
        thrown = std::current_exception();
    }
  }
  if (thrown != nullptr)
    std::rethrow_exception(thrown);
}

} // namespace judge
