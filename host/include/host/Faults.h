// Failures on demand: the host's services fail as told, so that one sees what becomes of the service above them.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

#include "host/HostExport.h"

namespace host
{
/// Who fails.
enum class FaultPlace
{
  das,        ///< the Data Access Service
  encryption, ///< `DasCrypt`
  store,      ///< the local management store
  disk        ///< what all of them, the security log included, write to
};

/// How it fails.
enum class FaultKind
{
  /// Of `das` and `store`: the runtime context does not find it. A manager remembers what it found and does not ask
  /// again, so only managers that have not found it yet meet this one; each search is a call.
  absent,
  /// Of `das`: each request waits for `delay` first, and is carried out then.
  slow,
  // Of `das`: nothing is carried out, and the reply is ...
  empty,     ///< no text at all
  malformed, ///< an XML text that ends too early
  refused,   ///< of the kind "error_response"
  wrongKind, ///< one of an update to a read, and one of a read without columns to an update

  /// Of `encryption`: both directions fail, and leave what their contract says.
  fails,
  /// Of `store`: every operation of its contract is refused, and changes nothing. A check for locks names the first
  /// item.
  refuses,
  /// Of `disk`: databases take no changes and the security log no records, as on a full disk; all can be read.
  full
};

/// One failure that the device is to meet.
struct SDM_HOST_EXPORT Fault
{
  FaultPlace place = FaultPlace::das; ///< who fails
  FaultKind kind = FaultKind::absent; ///< how; a kind of that place
  /// For so many calls, from now on or still to come; nothing for all until it is ended. A full disk counts no calls.
  std::optional<std::uint64_t> calls;
  /// How slow.
  std::chrono::milliseconds delay{0};
};

/// From now on this fault is met, in place of another one of its place; with 0 calls none. Each time that it is met is
/// logged at level 3. Faults are those of the process, as log and key are, and last until they are ended. Throws
/// `Error` for a kind that the place does not have, and for a full disk with a number of calls. This and all that
/// follow may be called from any thread.
SDM_HOST_EXPORT void setFault(const Fault& fault);

/// Ends all faults. What is waiting in a slow request goes on waiting.
SDM_HOST_EXPORT void endFaults();

/// Those that will be met, by place.
SDM_HOST_EXPORT std::vector<Fault> faults();

/// While one lives, calls of its thread meet no fault of `encryption`, nor are they counted: for those who look behind
/// the service and are not to be told nonsense.
class SDM_HOST_EXPORT WithoutFaults
{
public:
  WithoutFaults();  ///< Faults are passed over from here on.
  ~WithoutFaults(); ///< They are met again, unless another one still lives on this thread.
  WithoutFaults(const WithoutFaults&) = delete;
  WithoutFaults& operator=(const WithoutFaults&) = delete;
};
} // namespace host
