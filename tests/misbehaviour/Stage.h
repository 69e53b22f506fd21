// A manager with a small item map that takes every road through the library, on a platform that answers the same every
// time: what differs between two runs comes from what a test does in one of the calls.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "../unit/ServiceDataManagerTestAccess.h"
#include "Record.h"
#include "Services.h"
#include "Trace.h"

namespace misbehaviour
{

struct Operation;

class Stage
{
public:
  /// Loaded or not, the manager has found no service yet.
  explicit Stage(bool loaded);
  ~Stage();
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

  /// Registers the service's callbacks, but for those that are registered.
  void registerCallbacks();

  /// A request for these root ids; values are their names in capitals.
  std::unique_ptr<ManageableData> request(const std::vector<std::string>& rootIds);

  /// What a request looks like after an operation: values and reject reasons.
  static std::string shown(ManageableData& data);

  /// What a set, a read and all other operations add to the trace from now on; `anew` starts over before them.
  std::vector<std::string> afterwards(bool anew);

  /// What an operation adds to the trace, its result at the end.
  std::vector<std::string> traceOf(const Operation& operation);
  static std::vector<std::string> withoutLookups(const std::string& result);

  /// True when another thread gets the lock.
  bool lockIsFree();

  recording::Context context;
  recording::Das das;
  recording::Interfaces interfaces;
  recording::Store store;
  recording::SecurityLog securityLog;
  recording::Validator validator;
  recording::Agent agent;
  std::unique_ptr<ServiceDataManager> manager;
  ServiceDataManagerTestAccess access;

private:
  void fillStore();
  void load();

  /// The registered callbacks that live, each with what deletes it.
  std::map<const void*, std::function<void()>> callbacks;
};

/// One operation of the manager's interface, with arguments that lead it through all it does.
struct Operation
{
  std::string name;
  /// Works on loaded items.
  bool loaded;
  /// Items or callbacks are not what they were, so that only a new start can follow.
  bool startsOver;
  /// Returns what the caller sees of its end.
  std::function<std::string(Stage&)> run;
};

const std::vector<Operation>& operations();
const Operation& operation(const std::string& name);

/// The names of the calls that an operation makes, in order, when nothing goes wrong.
const std::vector<std::string>& callsOf(const Operation& operation);

/// How often a name occurs among the calls.
std::size_t timesIn(const std::vector<std::string>& calls, const std::string& name);

/// What `afterwards` adds to the trace of a manager to which nothing happened.
const std::vector<std::string>& undisturbed(bool anew);

/// Makes `action` happen in the call of this name at this position, counted from 1.
void inCall(const std::string& name, std::size_t position, std::function<void()> action);

} // namespace misbehaviour
