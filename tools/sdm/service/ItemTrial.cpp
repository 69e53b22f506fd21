// Setters are told the default of the map as the manager would tell them at a start.
#include "ItemTrial.h"

#include <RejectReasonsStrings.h>

#include "base/Shown.h"
#include "base/Text.h"

namespace cli
{
namespace
{

/// What the manager would take for a refusal.
bool isRefused(bool accepted, const std::string& reason)
{
  return !accepted && !beginsWith(reason, RejectReasonsStrings::not_changed);
}

/// The default that an item is tried with, and how findings name it: an item without an alternative default is tried
/// with its default again.
struct TriedDefault
{
  TriedDefault(const MapItem& item, DefaultKind kind, const Masking& masks)
      : value(item.defaultOf(kind)),
        rule(alternative(item, kind) ? "alternative" : "default"),
        text((alternative(item, kind) ? "alternative default " : "default ") + masks.value(item, value))
  {
  }

  static bool alternative(const MapItem& item, DefaultKind kind)
  {
    return kind == DefaultKind::alternative && item.hasAlternative();
  }

  const std::string& value;
  /// What the ids of its rules begin with.
  std::string rule;
  /// Safe to print.
  std::string text;
};

} // namespace

ItemTrial::ItemTrial(RunningService& itsService, const Masking& itsMasks, const TrialReport& itsReport)
    : service(itsService), masks(itsMasks), report(itsReport)
{
}

bool ItemTrial::set(const MapItem& item, DefaultKind kind) const
{
  ManagedItemSetter* setter = service.manager().setter(item.setter);
  if (setter == nullptr)
    return true;
  const TriedDefault tried(item, kind, masks);
  const std::string name = "its setter " + shownValue(item.setter);
  report.step("when " + name + " got the " + tried.text + " of " + shownValue(item.rootId));
  bool accepted = false;
  std::string reason;
  if (!report.guarded(item.rootId, name, "setter-throws",
                      [&] { accepted = setter->setValue(tried.value, item.indexValue, reason); }))
    return false;
  if (!isRefused(accepted, reason))
    return true;
  report.find(item.rootId, tried.rule + "-refused", name + " refuses the " + tried.text + because(reason));
  return false;
}

void ItemTrial::compare(const MapItem& item, DefaultKind kind) const
{
  ManagedItemGetter* getter = service.manager().getter(item.getter);
  if (getter == nullptr || service.manager().setter(item.setter) == nullptr)
    return;
  const TriedDefault tried(item, kind, masks);
  const std::string name = "its getter " + shownValue(item.getter);
  report.step("when " + name + " was asked for " + shownValue(item.rootId));
  std::string read;
  const auto ask = [&] { read = getter->getValue(item.indexValue); };
  if (!report.guarded(item.rootId, name, "getter-throws", ask) || read == tried.value)
    return;
  report.find(item.rootId, tried.rule + "-differs",
              name + " answers " + masks.value(item, read) + " after the " + tried.text);
}

} // namespace cli
