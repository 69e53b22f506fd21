// The trial of one item: its setter gets a default, its getter is asked for it.
#pragma once

#include <string>

#include "RunningService.h"
#include "TrialReport.h"
#include "map/ItemTable.h"
#include "map/Masking.h"

namespace cli
{

/// Borrows everything.
class ItemTrial
{
public:
  ItemTrial(RunningService& itsService, const Masking& itsMasks, const TrialReport& itsReport);

  /// Whether the setter takes the default of this kind; true when there is no setter. A refusal is a finding.
  bool set(const MapItem& item, DefaultKind kind) const;

  /// Asks the getter for what the setter took. Another answer is a finding; nothing is asked without both of them.
  void compare(const MapItem& item, DefaultKind kind) const;

private:
  RunningService& service;
  const Masking& masks;
  const TrialReport& report;
};

} // namespace cli
