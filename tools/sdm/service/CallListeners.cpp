#include "CallListeners.h"

namespace cli
{

void CallListeners::add(CallListener& listener)
{
  listeners.push_back(&listener);
}

void CallListeners::registered(const std::vector<std::string>& setters, const std::vector<std::string>& getters)
{
  for (CallListener* listener : listeners)
    listener->registered(setters, getters);
}

void CallListeners::operationBegins(const OperationCall& call)
{
  for (CallListener* listener : listeners)
    listener->operationBegins(call);
}

void CallListeners::operationEnded(const OperationCall& call, const OperationAnswer& answer)
{
  for (CallListener* listener : listeners)
    listener->operationEnded(call, answer);
}

void CallListeners::setterEnded(const SetterCall& call)
{
  for (CallListener* listener : listeners)
    listener->setterEnded(call);
}

void CallListeners::getterEnded(const GetterCall& call)
{
  for (CallListener* listener : listeners)
    listener->getterEnded(call);
}

void CallListeners::validatorEnded(const ValidatorCall& call)
{
  for (CallListener* listener : listeners)
    listener->validatorEnded(call);
}

} // namespace cli
