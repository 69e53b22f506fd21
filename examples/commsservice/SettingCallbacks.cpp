#include "SettingCallbacks.h"

#include <RejectReasonsStrings.h>

namespace commsservice
{

SettingSetter::SettingSetter(const Setting& itsSetting, LiveValues& liveValues, CallLog& callLog)
    : setting(itsSetting), live(liveValues), calls(callLog)
{
}

bool SettingSetter::setValue(const std::string& value, const std::string& indexValue, std::string& error)
{
  calls.setterCalled(setting.localOnly && !value.empty());
  error.clear();
  const std::string& wanted = setting.localOnly && value.empty() ? setting.initial : value;
  if (!live.has(setting.name, indexValue))
    error = indexValue.empty() ? "needs a row" : "has no row " + indexValue;
  else
    error = setting.rule(wanted);
  if (error.empty())
    return take(wanted, indexValue, error);
  calls.refused({setting.name, indexValue, error});
  refused();
  return false;
}

bool DirectSetter::take(const std::string& value, const std::string& row, std::string& error)
{
  if (live.get(setting.name, row) != value)
  {
    live.set(setting.name, row, value);
    return true;
  }
  if (setting.repeat == Setting::Repeat::accepted)
  {
    error = RejectReasonsStrings::unchanged_data;
    return true;
  }
  error = RejectReasonsStrings::not_changed;
  calls.repeated();
  return false;
}

GroupSetter::GroupSetter(const Setting& itsSetting, LiveValues& liveValues, CallLog& callLog,
                         GroupValidator& groupValidator)
    : SettingSetter(itsSetting, liveValues, callLog), validator(groupValidator)
{
}

bool GroupSetter::take(const std::string& value, const std::string& row, std::string& error)
{
  validator.stage(setting, value);
  if (live.get(setting.name, row) == value)
    error = RejectReasonsStrings::unchanged_data;
  return true;
}

void GroupSetter::refused()
{
  validator.spoil(setting);
}

SettingGetter::SettingGetter(const Setting& itsSetting, const LiveValues& liveValues)
    : setting(itsSetting), live(liveValues)
{
}

std::string SettingGetter::getValue(const std::string& indexValue)
{
  return live.get(setting.name, indexValue);
}

std::unique_ptr<ManagedItemSetter> makeSetter(const Setting& setting, LiveValues& live, CallLog& calls,
                                              GroupValidator& validator)
{
  if (setting.group.empty())
    return std::make_unique<DirectSetter>(setting, live, calls);
  return std::make_unique<GroupSetter>(setting, live, calls, validator);
}

// The manager owns what it is given, and copies the names.
void registerCallbacks(ServiceDataManagerIfc& manager, LiveValues& live, CallLog& calls, GroupValidator& validator)
{
  for (const Setting& setting : settings())
  {
    const std::string setterName = "set" + setting.name;
    const std::string getterName = "get" + setting.name;
    if (!setting.readOnly)
      manager.addSetter({setterName.c_str(), makeSetter(setting, live, calls, validator).release()});
    if (!setting.secret)
      manager.addGetter({getterName.c_str(), std::make_unique<SettingGetter>(setting, live).release()});
  }
}

} // namespace commsservice
