// The lock is taken for each event, the event is made and written under it, so that lines have the order of the calls.
#include "Recorder.h"

#include <nlohmann/json.hpp>

#include "SafeEvents.h"
#include "base/Digest.h"
#include "base/JsonText.h"

namespace cli::transcript
{
namespace
{

using Lock = std::lock_guard<std::recursive_mutex>;

/// The lines of who watches the lock tell how long somebody waited.
constexpr const char* tellsDurations = "LockWatch";

} // namespace

std::string digestOf(const std::filesystem::path& path)
{
  return "sha256:" + sha256Of(mapContent(path));
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
  events = std::make_unique<SafeEvents>(items, masking, folder.string());
  write({{"transcript", 1},
         {"version", header.version},
         {"service", header.service},
         {"map", header.map},
         {"interfaces", header.interfaces},
         {"logLevel", header.logLevel}});
}

// What is no UTF-8 is replaced, so that every line stays JSON.
void Recorder::write(const SafeEvents::Json& event)
{
  file.write(jsonText(event));
}

template <typename Event>
void Recorder::tell(const Event& event)
{
  const Lock lock(mutex);
  if (events)
    write(event());
}

void Recorder::command(const std::string& line, const std::set<std::size_t>& secretWords)
{
  tell(
      [&]
      {
        ++commands;
        return events->command(line, commandMask, secretWords);
      });
}

void Recorder::commandEnded(bool done)
{
  tell([&] { return SafeEvents::Json{{"result", "command"}, {"outcome", done ? "done" : "refused"}}; });
}

void Recorder::end()
{
  const Lock lock(mutex);
  if (!events)
    return;
  write({{"result", "run"}, {"commands", commands}});
  events.reset();
  file.finish();
}

std::optional<std::string> Recorder::secret(const std::string& name)
{
  const Lock lock(mutex);
  return events ? events->secrets().plainOf(name) : std::nullopt;
}

std::string Recorder::unfinished() const
{
  return file.unfinished();
}

std::string Recorder::trouble()
{
  const Lock lock(mutex);
  return file.trouble();
}

void Recorder::log(const host::LogLine& line)
{
  if (line.module != tellsDurations)
    tell([&] { return events->log(line); });
}

void Recorder::registered(const std::vector<std::string>& setters, const std::vector<std::string>& getters)
{
  tell([&] { return SafeEvents::Json{{"registered", {{"setters", setters}, {"getters", getters}}}}; });
}

void Recorder::operationBegins(const OperationCall& call)
{
  if (!call.housekeeping)
    tell([&] { return events->operation(call); });
}

void Recorder::operationEnded(const OperationCall& call, const OperationAnswer& answer)
{
  if (!call.housekeeping)
    tell([&] { return events->result(call, answer); });
}

void Recorder::setterEnded(const SetterCall& call)
{
  tell([&] { return events->setter(call); });
}

void Recorder::getterEnded(const GetterCall& call)
{
  tell([&] { return events->getter(call); });
}

void Recorder::validatorEnded(const ValidatorCall& call)
{
  tell([&] { return events->validator(call); });
}

void Recorder::requestBegins(const std::string& request)
{
  tell([&] { return events->request(request); });
}

void Recorder::exchangeEnded(const host::Exchange& exchange)
{
  tell([&] { return events->reply(exchange); });
}

void Recorder::storeEnded(const StoreCall& call)
{
  tell([&] { return events->store(call); });
}

void Recorder::recordEnded(const RecordCall& call)
{
  tell([&] { return events->securityRecord(call); });
}

} // namespace cli::transcript
