// The trial of one group: all its members get a default, then the validator is asked about them.
#pragma once

#include <string>
#include <vector>

#include "ItemTrial.h"
#include "RunningService.h"
#include "TrialReport.h"
#include "map/ItemTable.h"

namespace cli
{

/// Borrows everything.
class GroupTrial
{
public:
  using Members = std::vector<const MapItem*>;

  GroupTrial(RunningService& itsService, const ItemTrial& itsItems, const TrialReport& itsReport);

  /// `members` is not empty. With alternative defaults only where a member has one.
  void run(const std::string& group, const Members& members, DefaultKind kind) const;

private:
  void tryMembers(const std::string& group, const Members& members, DefaultKind kind) const;
  bool judge(const std::string& group, const MapItem& first, DefaultKind kind) const;
  void compareValidItems(const std::string& group, const Members& members) const;

  RunningService& service;
  const ItemTrial& items;
  const TrialReport& report;
};

} // namespace cli
