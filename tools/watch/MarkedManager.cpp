#include "MarkedManager.h"

#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <ValidatorIfc.h>

#include "SharedCallbacks.h"
#include "host/Marks.h"

namespace watch
{
namespace
{

using host::Mark;
using host::MarkKind;

class MarkedSetter : public ManagedItemSetter
{
public:
  MarkedSetter(std::string itsName, std::shared_ptr<ManagedItemSetter> realSetter)
      : name(std::move(itsName)), real(std::move(realSetter))
  {
  }
  bool setValue(const std::string& value, const std::string& indexValue, std::string& error) override
  {
    const Mark mark(MarkKind::callback, name);
    return real->setValue(value, indexValue, error);
  }

private:
  const std::string name;
  const std::shared_ptr<ManagedItemSetter> real;
};

class MarkedGetter : public ManagedItemGetter
{
public:
  MarkedGetter(std::string itsName, std::shared_ptr<ManagedItemGetter> realGetter)
      : name(std::move(itsName)), real(std::move(realGetter))
  {
  }
  std::string getValue(const std::string& indexValue) override
  {
    const Mark mark(MarkKind::callback, name);
    return real->getValue(indexValue);
  }

private:
  const std::string name;
  const std::shared_ptr<ManagedItemGetter> real;
};

class MarkedValidator : public ValidatorIfc
{
public:
  explicit MarkedValidator(ValidatorIfc& realValidator) : real(realValidator)
  {
  }
  std::vector<std::pair<std::string, std::string>> getValidGroupItems(const std::string& group) override
  {
    const Mark mark(MarkKind::callback, "validator " + group);
    return real.getValidGroupItems(group);
  }
  void clearGroup(const std::string& group) override
  {
    const Mark mark(MarkKind::callback, "validator " + group);
    real.clearGroup(group);
  }
  bool validateGroup(std::string& reason, const std::string& group) override
  {
    const Mark mark(MarkKind::callback, "validator " + group);
    return real.validateGroup(reason, group);
  }
  void reloadGroup(const std::string& group) override
  {
    const Mark mark(MarkKind::callback, "validator " + group);
    real.reloadGroup(group);
  }

private:
  ValidatorIfc& real;
};

/// The callbacks of one kind that the manager owns, as far as one can know from outside. Its mutex is never held during
/// a call of the manager, whose lock comes first.
template <typename Callback, typename Marked>
class Registered
{
public:
  /// What to register in place of the callback: itself where there is none, or where the manager will refuse the name
  /// and its owner keeps it.
  std::unique_ptr<Marked> marked(const char* name, Callback* callback)
  {
    if (name == nullptr)
      return nullptr;
    const std::lock_guard<std::mutex> hold(mutex);
    if (!names.insert(name).second || callback == nullptr)
      return nullptr;
    return std::make_unique<Marked>(name, callbacks.of(callback));
  }

  void forget()
  {
    const std::lock_guard<std::mutex> hold(mutex);
    names.clear();
    callbacks.forget();
  }

private:
  std::mutex mutex;
  std::set<std::string> names;
  SharedCallbacks<Callback> callbacks;
};

class MarkedManager : public ServiceDataManagerIfc
{
public:
  explicit MarkedManager(std::unique_ptr<ServiceDataManagerIfc> realManager) : real(std::move(realManager))
  {
  }
  ~MarkedManager() override
  {
    const Mark mark(MarkKind::operation, "the manager's end");
    real.reset();
  }

  void setup(SvcRTEContext* context, MgmtAgentIfc* agent, const std::string& name, ValidatorIfc* newValidator) override
  {
    auto marked = newValidator == nullptr ? nullptr : std::make_unique<MarkedValidator>(*newValidator);
    real->setup(context, agent, name, marked.get());
    validator = std::move(marked);
  }
  void initialise(const std::string& name) override
  {
    const Mark mark(MarkKind::operation, "initialise");
    real->initialise(name);
  }
  void initialiseWithoutSettingDefaultData(const std::string& name, const std::string& prefix) override
  {
    const Mark mark(MarkKind::operation, "initialiseWithoutSettingDefaultData");
    real->initialiseWithoutSettingDefaultData(name, prefix);
  }
  bool ready() override
  {
    const Mark mark(MarkKind::operation, "ready");
    return real->ready();
  }
  bool setData(ManageableData& data) override
  {
    const Mark mark(MarkKind::operation, "setData");
    return real->setData(data);
  }
  bool getData(ManageableData& data) override
  {
    const Mark mark(MarkKind::operation, "getData");
    return real->getData(data);
  }
  void manageableDataChanged(ManageableData& data) override
  {
    const Mark mark(MarkKind::operation, "manageableDataChanged");
    real->manageableDataChanged(data);
  }
  void addGetter(const Getter& getter) override
  {
    const Mark mark(MarkKind::operation, "addGetter");
    auto marked = getters.marked(getter.name, getter.getter);
    real->addGetter({getter.name, marked != nullptr ? marked.release() : getter.getter});
  }
  void addSetter(const Setter& setter) override
  {
    const Mark mark(MarkKind::operation, "addSetter");
    auto marked = setters.marked(setter.name, setter.setter);
    real->addSetter({setter.name, marked != nullptr ? marked.release() : setter.setter});
  }
  ManagedDataItem* getItem(const std::string& name) override
  {
    const Mark mark(MarkKind::operation, "getItem");
    return real->getItem(name);
  }
  ManagedDataItem* getPublishedItem(const std::string& name) override
  {
    const Mark mark(MarkKind::operation, "getPublishedItem");
    return real->getPublishedItem(name);
  }
  void setStartup(bool startup) override
  {
    real->setStartup(startup);
  }
  void clearAllManagedData() override
  {
    const Mark mark(MarkKind::operation, "clearAllManagedData");
    real->clearAllManagedData();
  }
  bool setDefaultUserData() override
  {
    const Mark mark(MarkKind::operation, "setDefaultUserData");
    return real->setDefaultUserData();
  }
  void importItemFromDAS(const std::string& rootId, std::string& value) override
  {
    const Mark mark(MarkKind::operation, "importItemFromDAS");
    real->importItemFromDAS(rootId, value);
  }
  void deleteGetters() override
  {
    const Mark mark(MarkKind::operation, "deleteGetters");
    real->deleteGetters();
    getters.forget();
  }
  void deleteSetters() override
  {
    const Mark mark(MarkKind::operation, "deleteSetters");
    real->deleteSetters();
    setters.forget();
  }
  void reloadUserData() override
  {
    const Mark mark(MarkKind::operation, "reloadUserData");
    real->reloadUserData();
  }

private:
  std::unique_ptr<MarkedValidator> validator;
  Registered<ManagedItemSetter, MarkedSetter> setters;
  Registered<ManagedItemGetter, MarkedGetter> getters;
  std::unique_ptr<ServiceDataManagerIfc> real;
};

} // namespace

std::unique_ptr<ServiceDataManagerIfc> marked(std::unique_ptr<ServiceDataManagerIfc> manager)
{
  return std::make_unique<MarkedManager>(std::move(manager));
}

} // namespace watch
