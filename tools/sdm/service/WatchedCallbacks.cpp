#include "WatchedCallbacks.h"

#include <utility>

namespace cli
{

WatchedSetter::WatchedSetter(std::string itsName, std::shared_ptr<ManagedItemSetter> realSetter,
                             CallListener& callListener)
    : name(std::move(itsName)), real(std::move(realSetter)), listener(callListener)
{
}

bool WatchedSetter::setValue(const std::string& value, const std::string& indexValue, std::string& error)
{
  SetterCall call = {name, indexValue, value, false, "", {}};
  tellOf(
      call.thrown, [&] { listener.setterBegins(call); },
      [&] { call.accepted = real->setValue(value, indexValue, error); },
      [&]
      {
        call.reason = error;
        listener.setterEnded(call);
      });
  return call.accepted;
}

WatchedGetter::WatchedGetter(std::string itsName, std::shared_ptr<ManagedItemGetter> realGetter,
                             CallListener& callListener)
    : name(std::move(itsName)), real(std::move(realGetter)), listener(callListener)
{
}

std::string WatchedGetter::getValue(const std::string& indexValue)
{
  GetterCall call = {name, indexValue, "", {}};
  tellOf(
      call.thrown, [&] { listener.getterBegins(call); }, [&] { call.value = real->getValue(indexValue); },
      [&] { listener.getterEnded(call); });
  return call.value;
}

WatchedValidator::WatchedValidator(ValidatorIfc& realValidator, CallListener& callListener)
    : real(realValidator), listener(callListener)
{
}

template <typename Work>
ValidatorCall WatchedValidator::told(const char* operation, const std::string& group, const Work& work) const
{
  ValidatorCall call = {operation, group, {}, "", {}, {}};
  tellOf(
      call.thrown, [&] { listener.validatorBegins(call); }, [&] { work(call); },
      [&] { listener.validatorEnded(call); });
  return call;
}

std::vector<std::pair<std::string, std::string>> WatchedValidator::getValidGroupItems(const std::string& group)
{
  return *told("getValidGroupItems", group, [&](ValidatorCall& call) { call.items = real.getValidGroupItems(group); })
              .items;
}

void WatchedValidator::clearGroup(const std::string& group)
{
  told("clearGroup", group, [&](ValidatorCall&) { real.clearGroup(group); });
}

bool WatchedValidator::validateGroup(std::string& reason, const std::string& group)
{
  const auto work = [&](ValidatorCall& call)
  {
    call.accepted = real.validateGroup(reason, group);
    // Reasons of an acceptance mean nothing, and may be those of an earlier group.
    call.reason = *call.accepted ? "" : reason;
  };
  return *told("validateGroup", group, work).accepted;
}

void WatchedValidator::reloadGroup(const std::string& group)
{
  told("reloadGroup", group, [&](ValidatorCall&) { real.reloadGroup(group); });
}

} // namespace cli
