// Where the wrappers that fail on demand ask whether they are to fail just now. Without faults that is one look at a
// flag.
#pragma once

#include <optional>

#include "host/Faults.h"

namespace host
{
/// Who meets a fault.
enum class FaultMeeting
{
  search, ///< whoever looks for a service; an absent one is met there
  call    ///< whoever calls it, who meets all else
};

/// Whether any fault is set.
[[nodiscard]] bool faultsAreSet();

/// The fault of this place, counted as met; nothing when there is none, or only one for the other meeting.
[[nodiscard]] std::optional<Fault> metFault(FaultPlace place, FaultMeeting meeting = FaultMeeting::call);

/// At which level each fault that was met is logged.
constexpr int metFaultLevel = 3;
} // namespace host
