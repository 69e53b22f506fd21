#include "Recorder.h"

#include <ManageableData.h>

#include <array>
#include <nlohmann/json.hpp>
#include <sodium.h>

#include "host/ManageableData.h"

namespace cli::record
{
namespace
{

using Lock = std::lock_guard<std::recursive_mutex>;

/// The lines of who watches the lock tell how long somebody waited.
constexpr const char* tellsDurations = "LockWatch";

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

Recorder::Values valuesIn(ManageableData& data)
{
  Recorder::Values values;
  for (const std::string& rootId : rootIdsOf(data))
  {
    std::string value;
    if (data.interogate(rootId, rootId, value))
      values.emplace_back(rootId, value);
  }
  return values;
}

} // namespace

struct Recorder::Scene
{
  Scene(const ItemTable& itemTable, const Masking& itsMasking, std::string itsFolder)
      : items(itemTable), masking(itsMasking), secrets(itemTable, itsMasking), folder(std::move(itsFolder))
  {
  }

  const ItemTable& items;
  const Masking& masking;
  Secrets secrets;
  const std::string folder;
};

std::string digestOf(const std::filesystem::path& path)
{
  const std::string content = mapContent(path);
  std::array<unsigned char, crypto_hash_sha256_BYTES> digest{};
  crypto_hash_sha256(digest.data(), reinterpret_cast<const unsigned char*>(content.data()), content.size());
  std::array<char, 2 * crypto_hash_sha256_BYTES + 1> text{};
  sodium_bin2hex(text.data(), text.size(), digest.data(), digest.size());
  return std::string("sha256:") + text.data();
}

Recorder::Recorder(const std::filesystem::path& itsFile, CommandMask mask, bool overwrites)
    : file(itsFile, overwrites), commandMask(std::move(mask))
{
}

Recorder::~Recorder() = default;

void Recorder::begin(const Header& header, const ItemTable& items, const Masking& masking,
                     const std::filesystem::path& folder)
{
  const Lock lock(mutex);
  scene = std::make_unique<Scene>(items, masking, folder.string());
  write({{"transcript", 1},
         {"version", header.version},
         {"service", header.service},
         {"map", header.map},
         {"interfaces", header.interfaces},
         {"logLevel", header.logLevel}});
}

// What is no UTF-8 is replaced, so that every line stays JSON.
void Recorder::write(const Json& event)
{
  if (scene)
    file.write(event.dump(-1, ' ', false, Json::error_handler_t::replace));
}

std::string Recorder::safe(const std::string& text)
{
  return scene ? replaced(scene->secrets.without(text), scene->folder, "DEVICE") : "";
}

void Recorder::addThrown(Json& event, const std::optional<std::string>& thrown)
{
  if (thrown)
    event["thrown"] = safe(*thrown);
}

Recorder::Json Recorder::valuesOf(const Values& values)
{
  Json object = Json::object();
  for (const auto& [rootId, value] : values)
    object[safe(rootId)] = scene ? scene->secrets.value(rootId, value) : "";
  return object;
}

Recorder::Json Recorder::askedValuesOf(const Values& values)
{
  Json object = Json::object();
  for (const auto& [rootId, value] : values)
    object[safe(rootId)] = scene ? scene->secrets.askedValue(rootId, value) : "";
  return object;
}

void Recorder::command(const std::string& line, const std::set<std::size_t>& secretWords)
{
  const Lock lock(mutex);
  if (!scene)
    return;
  ++commands;
  write({{"command", commandMask(line, scene->items, scene->masking, scene->secrets, secretWords)}});
}

void Recorder::commandEnded(bool done)
{
  const Lock lock(mutex);
  write({{"result", "command"}, {"outcome", done ? "done" : "refused"}});
}

void Recorder::requestBegins(const std::string& request)
{
  const Lock lock(mutex);
  write({{"request", safe(request)}});
}

void Recorder::exchangeEnded(const host::Exchange& exchange)
{
  const Lock lock(mutex);
  if (exchange.failure.empty())
    write({{"reply", safe(exchange.reply)}});
  else
    write({{"reply", nullptr}, {"thrown", safe(exchange.failure)}});
}

void Recorder::storeEnded(const StoreCall& call)
{
  const Lock lock(mutex);
  Json event = {{"store", call.operation}, {"items", call.names}};
  if (!call.values.empty())
    event["values"] = valuesOf(call.values);
  if (call.answer)
    event["answer"] = *call.answer;
  if (!call.objection.empty())
    event["objection"] = safe(call.objection);
  addThrown(event, call.thrown);
  write(event);
}

void Recorder::recordEnded(const RecordCall& call)
{
  const Lock lock(mutex);
  Json event = {{"securitylog", safe(call.record)}, {"failed", call.failed}};
  addThrown(event, call.thrown);
  write(event);
}

void Recorder::log(const host::LogLine& line)
{
  const Lock lock(mutex);
  if (line.module != tellsDurations)
    write({{"log", line.level}, {"module", line.module}, {"text", safe(line.text)}});
}

void Recorder::end()
{
  const Lock lock(mutex);
  if (!scene)
    return;
  write({{"result", "run"}, {"commands", commands}});
  scene.reset();
  file.finish();
}

std::optional<std::string> Recorder::secret(const std::string& name)
{
  const Lock lock(mutex);
  return scene ? scene->secrets.plainOf(name) : std::nullopt;
}

std::string Recorder::trouble()
{
  const Lock lock(mutex);
  return file.trouble();
}

void Recorder::registered(const std::vector<std::string>& setters, const std::vector<std::string>& getters)
{
  const Lock lock(mutex);
  write({{"registered", {{"setters", setters}, {"getters", getters}}}});
}

void Recorder::operationBegins(const OperationCall& call)
{
  if (call.housekeeping)
    return;
  const Lock lock(mutex);
  Json event = {{"op", call.name}};
  for (const auto& [name, text] : call.arguments)
    event[name] = safe(text);
  if (call.data != nullptr && call.name == "getData")
    event["items"] = rootIdsOf(*call.data);
  else if (call.data != nullptr)
    event["values"] = askedValuesOf(valuesIn(*call.data));
  write(event);
}

void Recorder::operationEnded(const OperationCall& call, const OperationAnswer& answer)
{
  if (call.housekeeping)
    return;
  const Lock lock(mutex);
  Json event = {{"result", call.name}};
  if (answer.success)
    event["answer"] = *answer.success;
  if (answer.value && scene)
    event["value"] = scene->masking.isSecret(call.arguments.front().second) ? scene->secrets.namedStored(*answer.value)
                                                                            : safe(*answer.value);
  if (call.data != nullptr && call.name == "getData")
    event["values"] = valuesOf(valuesIn(*call.data));
  for (const host::RejectReason& reject :
       call.data == nullptr ? std::vector<host::RejectReason>() : host::rejectReasons(*call.data))
    event["rejects"].push_back({{"item", safe(reject.rootId)}, {"reason", safe(reject.reason)}});
  addThrown(event, answer.thrown);
  write(event);
}

void Recorder::setterEnded(const SetterCall& call)
{
  const Lock lock(mutex);
  if (!scene)
    return;
  Json event = {{"setter", call.setter}};
  if (!call.row.empty())
    event["row"] = safe(call.row);
  event["value"] = scene->secrets.callbackValue(call.setter, call.value);
  event["accepted"] = call.accepted;
  if (!call.reason.empty())
    event["reason"] = safe(call.reason);
  addThrown(event, call.thrown);
  write(event);
}

void Recorder::getterEnded(const GetterCall& call)
{
  const Lock lock(mutex);
  if (!scene)
    return;
  Json event = {{"getter", call.getter}};
  if (!call.row.empty())
    event["row"] = safe(call.row);
  event["value"] = scene->secrets.callbackValue(call.getter, call.value);
  addThrown(event, call.thrown);
  write(event);
}

void Recorder::validatorEnded(const ValidatorCall& call)
{
  const Lock lock(mutex);
  Json event = {{"validator", call.operation}, {"group", call.group}};
  if (call.accepted)
    event["accepted"] = *call.accepted;
  if (!call.reason.empty())
    event["reason"] = safe(call.reason);
  if (call.items)
    event["values"] = valuesOf(*call.items);
  addThrown(event, call.thrown);
  write(event);
}

} // namespace cli::record
