// Which faults are set, for the whole process, and how often each is still to be met.
#include "host/Faults.h"

#include <atomic>
#include <map>
#include <mutex>

#include "Everlasting.h"
#include "FaultLayer.h"
#include "host/Error.h"

namespace host
{
namespace
{
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

bool faultsAreSet()
{
  return demands().any.load(std::memory_order_relaxed);
}

std::optional<Fault> metFault(FaultPlace place, FaultMeeting meeting)
{
  if (!faultsAreSet() || (place == FaultPlace::encryption && withoutFaults > 0))
    return std::nullopt;
  Demands& state = demands();
  const std::lock_guard<std::mutex> lock(state.mutex);
  const auto found = state.all.find(place);
  const bool searching = meeting == FaultMeeting::search;
  if (found == state.all.end() || (found->second.kind == FaultKind::absent) != searching)
    return std::nullopt;
  Fault fault = found->second;
  if (fault.calls && --*found->second.calls == 0)
    state.all.erase(found);
  state.any = !state.all.empty();
  return fault;
}
} // namespace host
