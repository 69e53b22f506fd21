// Each call is told when it begins and when it ends, whether it throws or not.
#include "WatchedCallbacks.h"

#include <utility>

#include "ServiceCall.h"

namespace cli
{
namespace
{

std::string place(const char* kind, const std::string& name, const std::string& item)
{
  return std::string(kind) + " " + name + (item.empty() ? "" : " of item " + item);
}

} // namespace

WatchedSetter::WatchedSetter(std::string itsName, std::shared_ptr<ManagedItemSetter> itsSetter,
                             CallListener& itsListener)
    : name(std::move(itsName)), real(std::move(itsSetter)), listener(itsListener)
{
}

bool WatchedSetter::setValue(const std::string& value, const std::string& indexValue, std::string& error)
{
  SetterCall call = {name, indexValue, value, false, "", {}};
  tellOf(
      call.thrown, [&] { listener.setterBegins(call); },
      [&]
      {
        calling(
            place("setter", name, listener.itemOf(name, indexValue)),
            [&] { call.accepted = real->setValue(value, indexValue, error); }, listener);
      },
      [&]
      {
        call.reason = error = error.empty() ? "" : listener.tellable(error);
        listener.setterEnded(call);
      });
  return call.accepted;
}

WatchedGetter::WatchedGetter(std::string itsName, std::shared_ptr<ManagedItemGetter> itsGetter,
                             CallListener& itsListener)
    : name(std::move(itsName)), real(std::move(itsGetter)), listener(itsListener)
{
}

std::string WatchedGetter::getValue(const std::string& indexValue)
{
  GetterCall call = {name, indexValue, "", {}};
  tellOf(
      call.thrown, [&] { listener.getterBegins(call); },
      [&]
      {
        const std::string where = place("getter", name, listener.itemOf(name, indexValue));
        call.value = calling(
            where, [&] { return real->getValue(indexValue); }, listener);
      },
      [&] { listener.getterEnded(call); });
  return call.value;
}

WatchedValidator::WatchedValidator(ValidatorIfc& itsValidator, CallListener& itsListener)
    : real(itsValidator), listener(itsListener)
{
}

template <typename Work>
ValidatorCall WatchedValidator::told(const char* operation, const std::string& group, const Work& work) const
{
  ValidatorCall call = {operation, group, {}, "", {}, {}};
  tellOf(
      call.thrown, [&] { listener.validatorBegins(call); },
      [&]
      {
        calling(
            std::string("validator's ") + operation + " of group " + group, [&] { work(call); }, listener);
      },
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
    reason = reason.empty() ? "" : listener.tellable(reason);
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
