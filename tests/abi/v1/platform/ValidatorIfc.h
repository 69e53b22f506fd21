// The owning service's judgement on items that only make sense together.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "PlatformExport.h"

/// Holds the pending values of each validation group and decides on them as a whole.
///
/// The owning service's setters hand it the values, then the manager asks. Group names are the texts of the
/// item map, compared exactly. Every operation runs on the thread of the manager's caller with the manager's
/// lock held, may call the manager again on that thread, and may throw. The manager borrows the validator
/// from `setup` on; without one (null) every group fails.
class SDM_PLATFORM_EXPORT ValidatorIfc
{
public:
  virtual ~ValidatorIfc() = default;

  /// The accepted items of a group that passed, as (root id, value) pairs in the order they are to be
  /// written. Empty when there is nothing to write or the group is not known.
  virtual std::vector<std::pair<std::string, std::string>> getValidGroupItems(const std::string& group) = 0;

  /// Forget what is held for the group; the operation that collected it is over. A group that is not known
  /// is no error.
  virtual void clearGroup(const std::string& group) = 0;

  /// Are the values held for the group consistent? On false `reason` may be filled with a text for the
  /// operator; on true it is ignored. `reason` may hold the text of an earlier group on entry.
  virtual bool validateGroup(std::string& reason, const std::string& group) = 0;

  /// The group's values have just been read from the database again; called before `validateGroup`.
  virtual void reloadGroup(const std::string& group) = 0;
};
