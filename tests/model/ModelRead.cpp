// Reading: the get request, the import of a single item, and what user data does with both.
#include <stdexcept>

#include <ClientUtils.h>
#include <DasCrypt.h>

#include "Model.h"

namespace judge
{

namespace
{

const std::string declaration = "<?xml version=\"1.0\" encoding=\"utf-8\"?>";

std::string opening(const ManagedDataItem& item, const std::string& reason)
{
  return declaration + "<Schema name=\"" + item.dasSchema + "\">" + element("ReasonForMessage", reason);
}

std::string ask(DataAccessServiceIfc& das, const std::string& request)
{
  return das.sendRequest(request.c_str(), request.size());
}

} // namespace

bool Model::getData(ManageableData& data)
{
  const Run run(*this);
  DataAccessServiceIfc* const das = dataAccess();
  if (das == nullptr)
  {
    say(2, "getData(%s) Can't find DataAccessService", serviceName.c_str());
    return false;
  }
  std::vector<std::string> rootIds;
  data.getRootIds(rootIds);
  bool answered = false;
  for (const std::string& rootId : rootIds)
    answered = readOne(data, rootId, *das) || answered;
  return answered;
}

bool Model::readOne(ManageableData& data, const std::string& rootId, DataAccessServiceIfc& das)
{
  const auto found = published.find(rootId);
  if (found == published.end())
  {
    say(2, "getData(%s) unknown item \"%s\"", serviceName.c_str(), rootId.c_str());
    return false;
  }
  const Item item = found->second;
  std::string value;
  if (item->getter != nullptr)
  {
    value = item->getter->getValue(item->dasIndexValue);
    trace(5, "getData(%s) \"%s\" = \"%s\"", serviceName.c_str(), rootId.c_str(),
          ClientUtils::hidePassword(rootId, value).c_str());
  }
  else
  {
    if (item->dasItem.empty())
      return false;
    std::string request = opening(*item, "read_request") + element("ResultCols", item->dasItem);
    if (!item->dasIndexName.empty())
      request += element("Entry", element(item->dasIndexName, item->dasIndexValue));
    request += "</Schema>";
    trace(5, "getData(%s) sending request to DataAccessService \"%s\"", serviceName.c_str(), request.c_str());
    const std::string answer = ask(das, request);
    if (parse(answer, false, &value))
    {
      value = decrypted(*item);
    }
    else
    {
      trace(3, "getData bad XML reply from DataAccessService or data not found \"%s\"", answer.c_str());
      value = item->defaultValue;
    }
  }
  data.populate(rootId, rootId, value);
  return true;
}

void Model::importItemFromDAS(const std::string& rootId, std::string& value)
{
  const Run run(*this);
  value = importOne(rootId);
  trace(4, "importItemFromDAS value \"%s\"", value.c_str());
}

std::string Model::importOne(const std::string& rootId)
{
  const auto found = published.find(rootId);
  if (found == published.end())
  {
    say(2, "importItemFromDAS unknown item \"%s\"", rootId.c_str());
    return "";
  }
  const Item item = found->second;
  trace(4, "importItemFromDAS \"%s\" ", rootId.c_str());
  DataAccessServiceIfc* const das = dataAccess();
  if (das == nullptr)
  {
    say(2, "importItemFromDAS Can't find DataAccessService");
    return "";
  }
  const std::string request = opening(*item, "read_request") + element("ResultCols", item->dasItem) + "</Schema>";
  trace(4, "importItemFromDAS sending request to DataAccessService \"%s\"", request.c_str());
  const std::string answer = ask(*das, request);
  trace(4, "importItemFromDAS reply from DataAccessService \"%s\"", answer.c_str());
  std::string value;
  const std::size_t at = answer.find(item->dasItem);
  if (at != std::string::npos)
  {
    // Throws when the column's name is the end of the reply.
    value = answer.substr(at + item->dasItem.size() + 1);
    value = value.substr(0, value.find('<'));
  }
  trace(4, "importItemFromDAS stripped reply from DataAccessService \"%s\"", value.c_str());
  return value;
}

bool Model::setDefaultUserData()
{
  const Run run(*this);
  // A callback may clear the items: the operation goes on with those it began with.
  const std::vector<Item> all = items;
  ManageableData candidates;
  for (const std::string& id : std::vector<std::string>(userDataIds))
  {
    for (const Item& item : all)
    {
      if (item->rootId != id || item->getter == nullptr)
        continue;
      if (item->getter->getValue(item->dasIndexValue) != item->defaultValue)
        candidates.addRootId(item->rootId, nullptr);
    }
  }
  if (store() == nullptr)
  {
    say(2, "setDefaultUserData Can't find OCMS");
    return false;
  }
  store()->checkData(candidates, nullptr);
  if (!candidates.getRootId().empty())
    return false;
  std::vector<std::string> rootIds;
  candidates.getRootIds(rootIds);
  if (rootIds.empty())
    return false;
  DataAccessServiceIfc* const das = dataAccess();
  if (das == nullptr)
  {
    say(2, "setDefaultUserData Can't find DataAccessService");
    return false;
  }
  ManageableData written;
  for (const std::string& rootId : rootIds)
  {
    for (const Item& item : all)
    {
      if (item->rootId == rootId)
        resetOne(item, *das, written);
    }
  }
  return store()->publishData(written);
}

void Model::resetOne(const Item& item, DataAccessServiceIfc& das, ManageableData& written)
{
  std::string value = item->defaultValue;
  if (item->dasEncrypted == "true")
  {
    value.clear();
    DasCrypt::toEncryptedText(item->defaultValue, value);
  }
  std::string cell = element(item->dasItem, value);
  if (!item->dasIndexName.empty())
    cell = element("Entry", element(item->dasIndexName, item->dasIndexValue) + cell);
  const std::string answer = ask(das, opening(*item, "update_request") + cell + "</Schema>");
  if (!parse(answer, true, nullptr))
    trace(3, "setDefaultUserData bad XML reply from DataAccessService \"%s\"", answer.c_str());
  std::string reason = "no setter available";
  if (!item->dasSchema.empty() && item->setter != nullptr)
    callSetter(*item, item->defaultValue, reason);
  written.populate(item->rootId, item->rootId, item->defaultValue);
}

void Model::reloadUserData()
{
  const Run run(*this);
  trace(4, "reloadUserData %d", static_cast<int>(userDataIds.size()));
  std::vector<SetRecord> wanted;
  for (const std::string& id : std::vector<std::string>(userDataIds))
  {
    trace(4, "convertDASUserItemToLocal %s", id.c_str());
    SetRecord record{id, "", false, "", nullptr};
    importItemFromDAS(id, record.value);
    const auto found = published.find(id);
    if (found != published.end())
      record.item = found->second;
    if (record.item != nullptr && record.item->dasEncrypted == "true" && !record.value.empty())
    {
      std::string plain;
      if (DasCrypt::fromEncryptedText(record.value, plain))
        record.value = plain;
      else
        say(2, "decryptData failed to base64decode data item");
    }
    wanted.push_back(record);
  }
  try
  {
    reload(wanted);
  }
  catch (...)
  {
    countAsFlagged(wanted);
    throw;
  }
}

void Model::reload(std::vector<SetRecord>& wanted)
{
  trySet(wanted);
  Requests requests = requestsFor(wanted);
  for (const std::string& group : std::set<std::string>(groups))
  {
    if (validator != nullptr)
      validator->reloadGroup(group);
  }
  for (const GroupRecord& group : validateGroups())
  {
    if (group.valid)
      addValidGroup(requests, group.group);
    else
      say(2, "reloadUserData failed because \"%s\" for group: \"%s\"", group.reason.c_str(), group.group.c_str());
  }
  forgetGroups();
  send(requests, dataAccess());
}

} // namespace judge
