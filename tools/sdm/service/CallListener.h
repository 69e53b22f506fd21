// The interface of everybody who listens to calls: between manager and service, manager and platform, and from outside.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/Traffic.h"

class ManageableData;

namespace cli
{

/// One operation of the manager. `data` is its record, as it stands when the listener is called; null without one.
struct OperationCall
{
  std::string name;
  /// Name and text of each argument that is no record.
  std::vector<std::pair<std::string, std::string>> arguments;
  ManageableData* data = nullptr;
  /// Registration, look-up or clean-up: nobody asked for a value, and no value changes.
  bool housekeeping = false;
};

/// How an operation ended. A member without an answer is empty.
struct OperationAnswer
{
  std::optional<bool> success;
  std::optional<std::string> value;
  /// The text of the exception; never empty, also for an exception without a text.
  std::optional<std::string> thrown;
};

/// Members after `value` are set when the call has ended.
struct SetterCall
{
  std::string setter;
  std::string row;
  std::string value;
  bool accepted = false;
  /// What the setter left in the text for refusals.
  std::string reason;
  std::optional<std::string> thrown;
};

/// Members after `row` are set when the call has ended.
struct GetterCall
{
  std::string getter;
  std::string row;
  std::string value;
  std::optional<std::string> thrown;
};

/// Members after `group` are set when the call has ended.
struct ValidatorCall
{
  std::string operation;
  std::string group;
  std::optional<bool> accepted;
  /// Of a refusal alone.
  std::string reason;
  /// What is to be written, by root id.
  std::optional<std::vector<std::pair<std::string, std::string>>> items;
  std::optional<std::string> thrown;
};

/// An operation of the local management store.
struct StoreCall
{
  std::string operation;
  /// The items it was about; of a registration the service.
  std::vector<std::string> names;
  /// The values that were passed or answered, without those of items that have none.
  std::vector<std::pair<std::string, std::string>> values;
  std::optional<bool> answer;
  /// The item that keeps a check from passing.
  std::string objection;
  std::optional<std::string> thrown;
};

/// A record that the security log was to take.
struct RecordCall
{
  std::string record;
  /// Whether the record says that the change failed.
  bool failed = false;
  std::optional<std::string> thrown;
};

/// Called on the thread that the call is on, often with the manager's lock held. Texts are unmasked. Each call is told
/// when it begins and when it is over, and calls stand in one another as they are made. It must not throw.
/// What a listener does not want to hear it leaves as it is here.
class CallListener
{
public:
  virtual ~CallListener() = default;

  virtual void registered(const std::vector<std::string>& /*setters*/, const std::vector<std::string>& /*getters*/)
  {
  }
  virtual void operationBegins(const OperationCall& /*call*/)
  {
  }
  virtual void operationEnded(const OperationCall& /*call*/, const OperationAnswer& /*answer*/)
  {
  }
  virtual void setterBegins(const SetterCall& /*call*/)
  {
  }
  virtual void setterEnded(const SetterCall& /*call*/)
  {
  }
  virtual void getterBegins(const GetterCall& /*call*/)
  {
  }
  virtual void getterEnded(const GetterCall& /*call*/)
  {
  }
  virtual void validatorBegins(const ValidatorCall& /*call*/)
  {
  }
  virtual void validatorEnded(const ValidatorCall& /*call*/)
  {
  }
  /// The manager looked for a service of the platform.
  virtual void serviceSought(const std::string& /*interfaceName*/, bool /*found*/)
  {
  }
  virtual void requestBegins(const std::string& /*request*/)
  {
  }
  virtual void exchangeEnded(const host::Exchange& /*exchange*/)
  {
  }
  virtual void storeEnded(const StoreCall& /*call*/)
  {
  }
  virtual void recordEnded(const RecordCall& /*call*/)
  {
  }

  /// What may be told of a text that a callback gave, a reason or what it threw: nobody behind the wrapper gets
  /// another one, the manager included. Asked before the end of the call is told.
  virtual std::string tellable(const std::string& text) const
  {
    return text;
  }
  /// The root id of the item that a setter or getter serves in this row; empty when it is not known.
  virtual std::string itemOf(const std::string& /*callback*/, const std::string& /*row*/) const
  {
    return "";
  }
};

/// The text of the exception that is being handled.
std::string thrownText();

/// What `call` answers. What it throws passes on, with `heard` called before.
template <typename Call, typename Heard>
auto hearing(const Call& call, const Heard& heard)
{
  try
  {
    return call();
  }
  catch (...)
  {
    heard(thrownText());
    throw;
  }
}

/// Makes a call with its listener told of both ends: `begins`, `call`, `ended`. What the call throws is noted as text
/// in `thrown` before `ended`, and passes on.
template <typename Begins, typename Call, typename Ended>
void tellOf(std::optional<std::string>& thrown, const Begins& begins, const Call& call, const Ended& ended)
{
  begins();
  hearing(call,
          [&](const std::string& text)
          {
            thrown = text;
            ended();
          });
  ended();
}

} // namespace cli
