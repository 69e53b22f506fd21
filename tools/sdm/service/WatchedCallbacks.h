// The callbacks of a service behind wrappers that tell a listener of each call.
#pragma once

#include <ServiceDataManagerIfc.h>
#include <ValidatorIfc.h>

#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "CallListener.h"

namespace cli
{

class WatchedSetter : public ManagedItemSetter
{
public:
  /// Borrows the listener.
  WatchedSetter(std::string itsName, std::shared_ptr<ManagedItemSetter> itsSetter, CallListener& itsListener);
  bool setValue(const std::string& value, const std::string& indexValue, std::string& error) override;

private:
  const std::string name;
  const std::shared_ptr<ManagedItemSetter> real;
  CallListener& listener;
};

class WatchedGetter : public ManagedItemGetter
{
public:
  /// Borrows the listener.
  WatchedGetter(std::string itsName, std::shared_ptr<ManagedItemGetter> itsGetter, CallListener& itsListener);
  std::string getValue(const std::string& indexValue) override;

private:
  const std::string name;
  const std::shared_ptr<ManagedItemGetter> real;
  CallListener& listener;
};

class WatchedValidator : public ValidatorIfc
{
public:
  /// Borrows both.
  WatchedValidator(ValidatorIfc& itsValidator, CallListener& itsListener);
  std::vector<std::pair<std::string, std::string>> getValidGroupItems(const std::string& group) override;
  void clearGroup(const std::string& group) override;
  bool validateGroup(std::string& reason, const std::string& group) override;
  void reloadGroup(const std::string& group) override;

private:
  template <typename Work>
  ValidatorCall told(const char* operation, const std::string& group, const Work& work) const;

  ValidatorIfc& real;
  CallListener& listener;
};

/// The callbacks of one kind that a service registered, as far as one can know in front of the manager. A service may
/// register one object under several names: its wrappers, which the manager owns, share it, and it is deleted with the
/// last of them. May be used from any thread; its mutex is never held during a call of the manager, whose lock comes
/// first.
template <typename Callback, typename Watched>
class CallbackRegistry
{
public:
  /// What to register in place of the callback, the caller's to hand on. Null where the callback itself has to be:
  /// there is none, or the manager will refuse the name and the callback stays its owner's.
  std::unique_ptr<Watched> watched(const char* name, Callback* callback, CallListener& listener)
  {
    const std::lock_guard<std::mutex> hold(mutex);
    if (name == nullptr || !names.insert(name).second || callback == nullptr)
      return nullptr;
    auto wrapper = std::make_unique<Watched>(name, owner(callback), listener);
    wrappers[name] = wrapper.get();
    return wrapper;
  }

  /// The wrapper of this name, which is the manager's, or null.
  Callback* find(const std::string& name) const
  {
    const std::lock_guard<std::mutex> hold(mutex);
    const auto found = wrappers.find(name);
    return found == wrappers.end() ? nullptr : found->second;
  }

  /// Of all that has a callback.
  std::vector<std::string> known() const
  {
    const std::lock_guard<std::mutex> hold(mutex);
    std::vector<std::string> all;
    for (const auto& [name, wrapper] : wrappers)
      all.push_back(name);
    return all;
  }

  /// To be called when the manager has deleted them.
  void forget()
  {
    const std::lock_guard<std::mutex> hold(mutex);
    names.clear();
    wrappers.clear();
    owners.clear();
  }

private:
  /// Takes the callback over when no wrapper has it yet.
  std::shared_ptr<Callback> owner(Callback* callback)
  {
    std::weak_ptr<Callback>& known = owners[callback];
    std::shared_ptr<Callback> shared = known.lock();
    if (!shared)
      shared.reset(callback);
    known = shared;
    return shared;
  }

  mutable std::mutex mutex;
  std::set<std::string> names;
  std::map<std::string, Callback*> wrappers;
  std::map<Callback*, std::weak_ptr<Callback>> owners;
};

} // namespace cli
