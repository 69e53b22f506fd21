// What the host can read out of a management record beyond the contract.
#pragma once

#include <ManageableData.h>

#include <string>
#include <vector>

#include "host/HostExport.h"

namespace host
{
/// One refusal, as it was handed to `ManageableData::addRejectReason`.
struct SDM_HOST_EXPORT RejectReason
{
  /// The item refused; empty for a group.
  std::string rootId;
  /// The root id once more; "/" for a group.
  std::string name;
  /// For the requester, in the setter's or the validator's words; may be empty.
  std::string reason;
};

/// The record's refusals in the order they came in.
SDM_HOST_EXPORT std::vector<RejectReason> rejectReasons(const ManageableData& data);
} // namespace host
