// Begins are told in order and ends in reverse, so that the calls of one listener stand inside those of another.
#include "CallListeners.h"

#include <algorithm>

namespace cli
{
namespace
{

template <typename Tell>
void inOrder(const std::vector<CallListener*>& listeners, const Tell& tell)
{
  for (CallListener* listener : listeners)
    tell(*listener);
}

template <typename Tell>
void inReverse(const std::vector<CallListener*>& listeners, const Tell& tell)
{
  std::for_each(listeners.rbegin(), listeners.rend(), [&](CallListener* listener) { tell(*listener); });
}

} // namespace

void CallListeners::add(CallListener& listener)
{
  listeners.push_back(&listener);
}

void CallListeners::registered(const std::vector<std::string>& setters, const std::vector<std::string>& getters)
{
  inOrder(listeners, [&](CallListener& listener) { listener.registered(setters, getters); });
}

void CallListeners::operationBegins(const OperationCall& call)
{
  inOrder(listeners, [&](CallListener& listener) { listener.operationBegins(call); });
}

void CallListeners::operationEnded(const OperationCall& call, const OperationAnswer& answer)
{
  inReverse(listeners, [&](CallListener& listener) { listener.operationEnded(call, answer); });
}

void CallListeners::setterBegins(const SetterCall& call)
{
  inOrder(listeners, [&](CallListener& listener) { listener.setterBegins(call); });
}

void CallListeners::setterEnded(const SetterCall& call)
{
  inReverse(listeners, [&](CallListener& listener) { listener.setterEnded(call); });
}

void CallListeners::getterBegins(const GetterCall& call)
{
  inOrder(listeners, [&](CallListener& listener) { listener.getterBegins(call); });
}

void CallListeners::getterEnded(const GetterCall& call)
{
  inReverse(listeners, [&](CallListener& listener) { listener.getterEnded(call); });
}

void CallListeners::validatorBegins(const ValidatorCall& call)
{
  inOrder(listeners, [&](CallListener& listener) { listener.validatorBegins(call); });
}

void CallListeners::validatorEnded(const ValidatorCall& call)
{
  inReverse(listeners, [&](CallListener& listener) { listener.validatorEnded(call); });
}

void CallListeners::serviceSought(const std::string& interfaceName, bool found)
{
  inOrder(listeners, [&](CallListener& listener) { listener.serviceSought(interfaceName, found); });
}

void CallListeners::requestBegins(const std::string& request)
{
  inOrder(listeners, [&](CallListener& listener) { listener.requestBegins(request); });
}

void CallListeners::exchangeEnded(const host::Exchange& exchange)
{
  inReverse(listeners, [&](CallListener& listener) { listener.exchangeEnded(exchange); });
}

void CallListeners::storeEnded(const StoreCall& call)
{
  inReverse(listeners, [&](CallListener& listener) { listener.storeEnded(call); });
}

void CallListeners::recordEnded(const RecordCall& call)
{
  inReverse(listeners, [&](CallListener& listener) { listener.recordEnded(call); });
}

std::string CallListeners::tellable(const std::string& text) const
{
  std::string told = text;
  for (const CallListener* listener : listeners)
    told = listener->tellable(told);
  return told;
}

std::string CallListeners::itemOf(const std::string& callback, const std::string& row) const
{
  for (const CallListener* listener : listeners)
  {
    if (std::string item = listener->itemOf(callback, row); !item.empty())
      return item;
  }
  return "";
}

} // namespace cli
