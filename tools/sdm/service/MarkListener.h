// Tells the host platform what each thread does. Messages about a lock then name who holds it, and durations of
// callbacks are counted by name.
#pragma once

#include "CallListener.h"

namespace cli
{

/// May be used from any thread. Operations are marked with their names, setters and getters with the names that they
/// are registered under, the validator's calls with "validator" and the group.
class MarkListener : public CallListener
{
public:
  void operationBegins(const OperationCall& call) override;
  void operationEnded(const OperationCall& call, const OperationAnswer& answer) override;
  void setterBegins(const SetterCall& call) override;
  void setterEnded(const SetterCall& call) override;
  void getterBegins(const GetterCall& call) override;
  void getterEnded(const GetterCall& call) override;
  void validatorBegins(const ValidatorCall& call) override;
  void validatorEnded(const ValidatorCall& call) override;
};

} // namespace cli
