// Passes each call on to several listeners.
#pragma once

#include <vector>

#include "CallListener.h"

namespace cli
{

/// Tells each listener: of the begin of a call in the order of `add`, of its end in reverse order.
class CallListeners : public CallListener
{
public:
  /// Borrows it. Before the first call.
  void add(CallListener& listener);

  void registered(const std::vector<std::string>& setters, const std::vector<std::string>& getters) override;
  void operationBegins(const OperationCall& call) override;
  void operationEnded(const OperationCall& call, const OperationAnswer& answer) override;
  void setterBegins(const SetterCall& call) override;
  void setterEnded(const SetterCall& call) override;
  void getterBegins(const GetterCall& call) override;
  void getterEnded(const GetterCall& call) override;
  void validatorBegins(const ValidatorCall& call) override;
  void validatorEnded(const ValidatorCall& call) override;
  void serviceSought(const std::string& interfaceName, bool found) override;
  void requestBegins(const std::string& request) override;
  void exchangeEnded(const host::Exchange& exchange) override;
  void storeEnded(const StoreCall& call) override;
  void recordEnded(const RecordCall& call) override;

  /// What each of them lets pass, and the first one's answer.
  std::string tellable(const std::string& text) const override;
  std::string itemOf(const std::string& callback, const std::string& row) const override;

private:
  std::vector<CallListener*> listeners;
};

} // namespace cli
