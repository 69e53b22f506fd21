// The callbacks between the manager and the live values: one setter per way of taking a value, one getter.
#pragma once

#include <memory>
#include <string>

#include <ServiceDataManagerIfc.h>

#include "CallLog.h"
#include "GroupValidator.h"
#include "LiveValues.h"
#include "Settings.h"

namespace commsservice
{

/// Checks a value against its setting, then takes it in the manner of its kind of setting.
class SettingSetter : public ManagedItemSetter
{
public:
  /// Borrows everything; all of it outlives the setter.
  SettingSetter(const Setting& itsSetting, LiveValues& liveValues, CallLog& callLog);

  bool setValue(const std::string& value, const std::string& indexValue, std::string& error) override;

protected:
  /// Takes a value that is fit for the setting.
  virtual bool take(const std::string& value, const std::string& row, std::string& error) = 0;

  /// Hears of a value that is not.
  virtual void refused()
  {
  }

  const Setting& setting;
  LiveValues& live;
  CallLog& calls;
};

/// Makes a value live at once. A value that is live already is taken again with the remark `unchanged_data`,
/// or, where that would interrupt something, refused as `not_changed`; the database stores it either way, so
/// that it stays when a default changes.
class DirectSetter : public SettingSetter
{
public:
  using SettingSetter::SettingSetter;

protected:
  bool take(const std::string& value, const std::string& row, std::string& error) override;
};

/// Leaves a value with the validator until its group is judged.
class GroupSetter : public SettingSetter
{
public:
  GroupSetter(const Setting& itsSetting, LiveValues& liveValues, CallLog& callLog, GroupValidator& groupValidator);

protected:
  bool take(const std::string& value, const std::string& row, std::string& error) override;
  void refused() override;

private:
  GroupValidator& validator;
};

/// Answers the live value of a row. Groups that are not judged yet do not show.
class SettingGetter : public ManagedItemGetter
{
public:
  SettingGetter(const Setting& itsSetting, const LiveValues& liveValues);

  std::string getValue(const std::string& indexValue) override;

private:
  const Setting& setting;
  const LiveValues& live;
};

/// The setter that fits the setting.
std::unique_ptr<ManagedItemSetter> makeSetter(const Setting& setting, LiveValues& live, CallLog& calls,
                                              GroupValidator& validator);

/// Registers the callbacks of every setting: "set" and "get" before its name. Borrows the rest, which outlives them.
void registerCallbacks(ServiceDataManagerIfc& manager, LiveValues& live, CallLog& calls, GroupValidator& validator);

} // namespace commsservice
