#include "Services.h"

#include "Record.h"
#include "Trace.h"

namespace recording
{

namespace
{

void run(const std::string& name, const Hook& hook)
{
  called(name);
  if (hook)
    hook();
}

std::string joined(const std::list<std::string>& texts)
{
  std::string all;
  for (const std::string& text : texts)
    all += (all.empty() ? "" : ",") + text;
  return all;
}

} // namespace

Executable* Context::findService(const std::string& interfaceName)
{
  note("findService(" + quoted(interfaceName) + ")");
  run("findService", hook);
  const auto found = services.find(interfaceName);
  return found == services.end() ? nullptr : found->second;
}

Das::Das()
{
  fallback = [](const std::string& request)
  {
    const bool update = request.find("update_request") != std::string::npos;
    return std::string("<Schema><ReasonForMessage>") + (update ? "update_response" : "read_response") +
           "</ReasonForMessage></Schema>";
  };
}

std::string Das::sendRequest(const char* request, size_t length)
{
  const std::string text(request, length);
  note("sendRequest(" + text + ")");
  run("sendRequest", hook);
  if (replies.empty())
    return answered("sendRequest", fallback(text));
  std::string reply = replies.front();
  replies.pop_front();
  return reply;
}

uint32_t Interfaces::getInterfaceCount()
{
  note("getInterfaceCount()");
  run("getInterfaceCount", hook);
  return count;
}

void Store::called(const std::string& call)
{
  note(call);
  run(call.substr(0, call.find('(')), hook);
}

bool Store::registerService(const std::string& serviceName, MgmtAgentIfc* agent, int version)
{
  called("registerService(" + quoted(serviceName) + ", " + (agent != nullptr ? "agent" : "null") + ", " +
         std::to_string(version) + ")");
  return registers;
}

bool Store::lookupData(ManageableData& data)
{
  called("lookupData(" + describe(data) + ")");
  const UntracedRecords untraced;
  const std::string dictionary = data.getRootId();
  if (!dictionary.empty())
  {
    const auto found = dictionaries.find(dictionary);
    if (found == dictionaries.end())
      return false;
    for (const auto& entry : found->second)
      data.populate(dictionary, entry.first, answered("lookupData", entry.second));
    return looksUp;
  }
  std::vector<std::string> rootIds;
  data.getRootIds(rootIds);
  for (const std::string& rootId : rootIds)
  {
    const auto found = values.find(rootId);
    if (found != values.end())
      data.populate(rootId, rootId, answered("lookupData", found->second));
  }
  return looksUp;
}

bool Store::subscribe(std::list<std::string>& rootIds, MgmtAgentIfc* agent)
{
  called("subscribe(" + joined(rootIds) + ", " + (agent != nullptr ? "agent" : "null") + ")");
  return subscribes;
}

bool Store::publishData(ManageableData& data)
{
  called("publishData(" + describe(data) + ")");
  return publishes;
}

bool Store::checkData(ManageableData& data, void* context)
{
  called("checkData(" + describe(data) + ", " + (context != nullptr ? "context" : "null") + ")");
  const UntracedRecords untraced;
  data.setRootId(answered("checkData", objection), this);
  return objection.empty();
}

void SecurityLog::logSecurityEvent(time_t when, int facility, int severity, int eventType, int eventClass, bool failed,
                                   std::string record, std::string user, std::string origin)
{
  lastTime = when;
  note("logSecurityEvent(" + std::to_string(facility) + ", " + std::to_string(severity) + ", " +
       std::to_string(eventType) + ", " + std::to_string(eventClass) + ", " + (failed ? "failed" : "done") + ", " +
       quoted(record) + ", " + quoted(user) + ", " + quoted(origin) + ")");
  run("logSecurityEvent", hook);
}

void Validator::called(const std::string& call)
{
  note(call);
  run(call.substr(0, call.find('(')), hook);
}

std::vector<std::pair<std::string, std::string>> Validator::getValidGroupItems(const std::string& group)
{
  called("getValidGroupItems(" + quoted(group) + ")");
  auto items = groups[group].items;
  for (auto& item : items)
    item.second = answered("getValidGroupItems", item.second);
  return items;
}

void Validator::clearGroup(const std::string& group)
{
  called("clearGroup(" + quoted(group) + ")");
}

bool Validator::validateGroup(std::string& reason, const std::string& group)
{
  called("validateGroup(" + quoted(reason) + ", " + quoted(group) + ")");
  const Group& judged = groups[group];
  if (!judged.reason.empty())
    reason = answered("validateGroup", judged.reason);
  return judged.valid;
}

void Validator::reloadGroup(const std::string& group)
{
  called("reloadGroup(" + quoted(group) + ")");
}

void Agent::observedDataChanged(ManageableData& data)
{
  note("observedDataChanged(" + describe(data) + ")");
  run("observedDataChanged", hook);
}

Setter::Setter(std::string callbackName) : name(std::move(callbackName))
{
}

Setter::~Setter()
{
  note("delete setter " + name);
}

bool Setter::setValue(const std::string& value, const std::string& indexValue, std::string& error)
{
  note("set " + name + "(" + quoted(value) + ", " + quoted(indexValue) + ")");
  errorOnEntry = error;
  if (!remark.empty())
    error = answered("setValue", remark);
  const bool accepted = accepts;
  run("setValue", hook);
  return accepted;
}

Getter::Getter(std::string callbackName) : name(std::move(callbackName))
{
}

Getter::~Getter()
{
  note("delete getter " + name);
}

std::string Getter::getValue(const std::string& indexValue)
{
  note("get " + name + "(" + quoted(indexValue) + ")");
  std::string answer = answered("getValue", value);
  run("getValue", hook);
  return answer;
}

} // namespace recording
