// Every text that comes from outside passes `safe`, or the names that secrets have by the place where they stand.
#include "SafeEvents.h"

#include <ManageableData.h>

#include <nlohmann/json.hpp>
#include <utility>

#include "host/RejectReasons.h"

namespace cli::transcript
{
namespace
{

std::string replaced(std::string text, const std::string& what, const std::string& by)
{
  for (std::size_t at = text.find(what); !what.empty() && at != std::string::npos; at = text.find(what, at + by.size()))
    text.replace(at, what.size(), by);
  return text;
}

std::vector<std::string> rootIdsOf(ManageableData& data)
{
  std::vector<std::string> rootIds;
  data.getRootIds(rootIds);
  return rootIds;
}

NamedValues valuesIn(ManageableData& data)
{
  NamedValues values;
  for (const std::string& rootId : rootIdsOf(data))
  {
    std::string value;
    if (data.interogate(rootId, rootId, value))
      values.emplace_back(rootId, value);
  }
  return values;
}

} // namespace

SafeEvents::SafeEvents(const ItemTable& itemTable, const Masking& itsMasking, std::string itsFolder)
    : items(itemTable), masking(itsMasking), named(itemTable, itsMasking), folder(std::move(itsFolder))
{
}

std::string SafeEvents::safe(const std::string& text)
{
  return replaced(named.without(text), folder, "DEVICE");
}

void SafeEvents::addThrown(Json& event, const std::optional<std::string>& thrown)
{
  if (thrown)
    event["thrown"] = safe(*thrown);
}

void SafeEvents::addRow(Json& event, const std::string& row)
{
  if (!row.empty())
    event["row"] = safe(row);
}

void SafeEvents::addReason(Json& event, const std::string& reason)
{
  if (!reason.empty())
    event["reason"] = safe(reason);
}

SafeEvents::Json SafeEvents::valuesOf(const NamedValues& values)
{
  Json object = Json::object();
  for (const auto& [rootId, value] : values)
    object[safe(rootId)] = named.value(rootId, value);
  return object;
}

SafeEvents::Json SafeEvents::askedValuesOf(const NamedValues& values)
{
  Json object = Json::object();
  for (const auto& [rootId, value] : values)
    object[safe(rootId)] = named.askedValue(rootId, value);
  return object;
}

SafeEvents::Json SafeEvents::command(const std::string& line, const CommandMask& mask,
                                     const std::set<std::size_t>& secretWords)
{
  return {{"command", mask(line, items, masking, named, secretWords)}};
}

SafeEvents::Json SafeEvents::request(const std::string& text)
{
  return {{"request", safe(text)}};
}

SafeEvents::Json SafeEvents::reply(const host::Exchange& exchange)
{
  if (exchange.failure.empty())
    return {{"reply", safe(exchange.reply)}};
  return {{"reply", nullptr}, {"thrown", safe(exchange.failure)}};
}

SafeEvents::Json SafeEvents::store(const StoreCall& call)
{
  Json event = {{"store", call.operation}, {"items", call.names}};
  if (!call.values.empty())
    event["values"] = valuesOf(call.values);
  if (call.answer)
    event["answer"] = *call.answer;
  if (!call.objection.empty())
    event["objection"] = safe(call.objection);
  addThrown(event, call.thrown);
  return event;
}

SafeEvents::Json SafeEvents::securityRecord(const RecordCall& call)
{
  Json event = {{"securitylog", safe(call.record)}, {"failed", call.failed}};
  addThrown(event, call.thrown);
  return event;
}

SafeEvents::Json SafeEvents::log(const host::LogLine& line)
{
  return {{"log", line.level}, {"module", line.module}, {"text", safe(line.text)}};
}

SafeEvents::Json SafeEvents::operation(const OperationCall& call)
{
  Json event = {{"op", call.name}};
  for (const auto& [name, text] : call.arguments)
    event[name] = safe(text);
  if (call.data != nullptr && call.name == "getData")
    event["items"] = rootIdsOf(*call.data);
  else if (call.data != nullptr)
    event["values"] = askedValuesOf(valuesIn(*call.data));
  return event;
}

SafeEvents::Json SafeEvents::result(const OperationCall& call, const OperationAnswer& answer)
{
  Json event = {{"result", call.name}};
  if (answer.success)
    event["answer"] = *answer.success;
  if (answer.value)
    event["value"] =
        masking.isSecret(call.arguments.front().second) ? named.namedStored(*answer.value) : safe(*answer.value);
  if (call.data != nullptr && call.name == "getData")
    event["values"] = valuesOf(valuesIn(*call.data));
  for (const host::RejectReason& reject :
       call.data == nullptr ? std::vector<host::RejectReason>() : host::rejectReasons(*call.data))
    event["rejects"].push_back({{"item", safe(reject.rootId)}, {"reason", safe(reject.reason)}});
  addThrown(event, answer.thrown);
  return event;
}

SafeEvents::Json SafeEvents::setter(const SetterCall& call)
{
  Json event = {{"setter", call.setter}};
  addRow(event, call.row);
  event["value"] = named.callbackValue(call.setter, call.value);
  event["accepted"] = call.accepted;
  addReason(event, call.reason);
  addThrown(event, call.thrown);
  return event;
}

SafeEvents::Json SafeEvents::getter(const GetterCall& call)
{
  Json event = {{"getter", call.getter}};
  addRow(event, call.row);
  event["value"] = named.callbackValue(call.getter, call.value);
  addThrown(event, call.thrown);
  return event;
}

SafeEvents::Json SafeEvents::validator(const ValidatorCall& call)
{
  Json event = {{"validator", call.operation}, {"group", call.group}};
  if (call.accepted)
    event["accepted"] = *call.accepted;
  addReason(event, call.reason);
  if (call.items)
    event["values"] = valuesOf(*call.items);
  addThrown(event, call.thrown);
  return event;
}

} // namespace cli::transcript
