#include "host/Faults.h"

#include <logAppUni.h>

#include <atomic>
#include <map>
#include <mutex>
#include <thread>

#include "DasReply.h"
#include "DasRequest.h"
#include "Everlasting.h"
#include "FaultLayer.h"
#include "Refusal.h"
#include "Trouble.h"
#include "host/Error.h"

namespace host
{
namespace
{
constexpr int demandLevel = 3;

struct Demands
{
  /// Asked first by everybody, so that nobody pays for faults that are not there.
  std::atomic<bool> any{false};
  std::mutex mutex;
  std::map<FaultPlace, Fault> all;
};

Demands& demands()
{
  static const Everlasting<Demands> state;
  return *state;
}

thread_local int withoutFaults = 0;

bool has(FaultPlace place, FaultKind kind)
{
  switch (kind)
  {
  case FaultKind::absent:
    return place == FaultPlace::das || place == FaultPlace::store;
  case FaultKind::slow:
  case FaultKind::empty:
  case FaultKind::malformed:
  case FaultKind::refused:
  case FaultKind::wrongKind:
    return place == FaultPlace::das;
  case FaultKind::fails:
    return place == FaultPlace::encryption;
  case FaultKind::refuses:
    return place == FaultPlace::store;
  case FaultKind::full:
    return place == FaultPlace::disk;
  }
  return false;
}

/// The fault of this place, counted as met; nothing when there is none, or only one for the other way to it: searches
/// meet an absent service, calls all else.
std::optional<Fault> met(FaultPlace place, bool searching)
{
  Demands& state = demands();
  if (!state.any.load(std::memory_order_relaxed))
    return std::nullopt;
  const std::lock_guard<std::mutex> lock(state.mutex);
  const auto found = state.all.find(place);
  if (found == state.all.end() || (found->second.kind == FaultKind::absent) != searching)
    return std::nullopt;
  Fault fault = found->second;
  if (fault.calls && --*found->second.calls == 0)
    state.all.erase(found);
  state.any = !state.all.empty();
  return fault;
}

void logDemand(int line, const char* what)
{
  if (loggingOnAppUni("HostPlatform", demandLevel))
    logAppUni("HostPlatform", "host/src/Faults", demandLevel, line, "fault on demand: %s", what);
}

DasRequest readAsFarAsItGoes(const char* text, std::size_t length)
{
  DasRequest request;
  try
  {
    readDasRequest(text, length, request);
  }
  catch (const Refusal&)
  {
    // The real service would refuse it; here the answer is nonsense anyway.
  }
  return request;
}
} // namespace

void setFault(const Fault& fault)
{
  if (!has(fault.place, fault.kind))
    throw Error("this service has no such fault");
  if (fault.kind == FaultKind::full && fault.calls)
    throw Error("a full disk counts no calls");
  Demands& state = demands();
  const std::lock_guard<std::mutex> lock(state.mutex);
  if (fault.calls && *fault.calls == 0)
    state.all.erase(fault.place);
  else
    state.all[fault.place] = fault;
  state.any = !state.all.empty();
}

void endFaults()
{
  Demands& state = demands();
  const std::lock_guard<std::mutex> lock(state.mutex);
  state.all.clear();
  state.any = false;
}

std::vector<Fault> faults()
{
  Demands& state = demands();
  const std::lock_guard<std::mutex> lock(state.mutex);
  std::vector<Fault> list;
  for (const auto& [place, fault] : state.all)
    list.push_back(fault);
  return list;
}

WithoutFaults::WithoutFaults()
{
  ++withoutFaults;
}

WithoutFaults::~WithoutFaults()
{
  --withoutFaults;
}

bool isAbsentOnDemand(const std::string& interfaceName)
{
  const bool das = interfaceName == "DataAccessServiceIfc";
  if (!das && interfaceName != "LocalMgmtIfc")
    return false;
  if (!met(das ? FaultPlace::das : FaultPlace::store, true))
    return false;
  logDemand(__LINE__, das ? "the Data Access Service is not found" : "the local management store is not found");
  return true;
}

std::optional<std::string> replyOnDemand(const char* text, std::size_t length)
{
  const std::optional<Fault> fault = met(FaultPlace::das, false);
  if (!fault)
    return std::nullopt;
  if (fault->kind == FaultKind::slow)
  {
    logDemand(__LINE__, "the Data Access Service is slow");
    std::this_thread::sleep_for(fault->delay);
    return std::nullopt;
  }
  logDemand(__LINE__, "the Data Access Service does not carry out a request");
  if (fault->kind == FaultKind::empty)
    return "";
  const DasRequest request = readAsFarAsItGoes(text, length);
  if (fault->kind == FaultKind::refused)
    return dasErrorReply(request.schema, "refused on demand");
  const bool reading = request.kind == DasRequest::Kind::read;
  // Cut before anything in it could be taken for a value.
  const std::string ofRightKind = reading ? DasReadReply(request.schema).finished() : dasUpdateReply(request.schema);
  if (fault->kind == FaultKind::malformed)
    return ofRightKind.substr(0, ofRightKind.rfind('<'));
  return reading ? dasUpdateReply(request.schema) : DasReadReply(request.schema).finished();
}

bool encryptionFailsOnDemand()
{
  if (withoutFaults > 0 || !met(FaultPlace::encryption, false))
    return false;
  logDemand(__LINE__, "encryption fails");
  return true;
}

bool storeRefusesOnDemand(const char* operation)
{
  if (!met(FaultPlace::store, false))
    return false;
  logDemand(__LINE__, (std::string("the local management store refuses a ") + operation).c_str());
  return true;
}

void requireRoom(const std::filesystem::path& file)
{
  if (!met(FaultPlace::disk, false))
    return;
  logDemand(__LINE__, "the disk is full");
  throw DiskTrouble(file.string() + ": the disk is full, on demand");
}
} // namespace host
