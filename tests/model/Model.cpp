// What the manager is: its surroundings, its callbacks, its table, and how operations follow and enclose each other.
#include "Model.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <exception>
#include <utility>

#include <logAppUni.h>

namespace judge
{

namespace
{

std::string formatted(const char* format, va_list arguments) __attribute__((format(printf, 1, 0)));

std::string formatted(const char* format, va_list arguments)
{
  va_list again;
  va_copy(again, arguments);
  std::string text(static_cast<std::size_t>(std::vsnprintf(nullptr, 0, format, again)) + 1, '\0');
  va_end(again);
  std::vsnprintf(text.data(), text.size(), format, arguments);
  text.pop_back();
  return text;
}

void write(int level, const std::string& text)
{
  logAppUni("ServiceDataManager", "./src/ServiceDataManager", level, 1, "%s", text.c_str());
}

} // namespace

void say(int level, const char* format, ...)
{
  va_list arguments;
  va_start(arguments, format);
  write(level, formatted(format, arguments));
  va_end(arguments);
}

void trace(int level, const char* format, ...)
{
  if (!loggingOnAppUni("ServiceDataManager", level))
    return;
  va_list arguments;
  va_start(arguments, format);
  write(level, formatted(format, arguments));
  va_end(arguments);
}

bool beginsWith(const std::string& text, const std::string& beginning)
{
  return text.compare(0, beginning.size(), beginning) == 0;
}

std::string element(const std::string& name, const std::string& value)
{
  return "<" + name + ">" + value + "</" + name + ">";
}

Model::Run::Run(Model& owner)
    : lock(owner.semaphore),
      model(owner),
      exceptions(std::uncaught_exceptions()),
      outerLastingGroups(owner.lastingGroups),
      outerLasting(owner.lastingRecords)
{
  ++model.running;
  model.lastingGroups = model.groups;
  if (model.running > 1)
  {
    outerGroups.swap(model.groups);
    outerRecords.swap(model.records);
  }
  if (model.reply.running)
  {
    outerReply = model.reply;
    model.reply = Reply();
  }
  model.lastingRecords = model.records.size();
}

Model::Run::~Run()
{
  if (std::uncaught_exceptions() > exceptions)
    giveBack();
  model.groups.insert(outerGroups.begin(), outerGroups.end());
  model.lastingGroups = outerLastingGroups;
  // What an inner operation leaves lasts, unless records that the outer one has yet to send stand in front of it.
  if (model.running > 1 && outerRecords.size() <= outerLasting)
    outerLasting = outerRecords.size() + model.records.size();
  model.records.insert(model.records.begin(), outerRecords.begin(), outerRecords.end());
  model.lastingRecords = outerLasting;
  if (outerReply.running)
    model.reply = outerReply;
  if (model.running == 1)
  {
    for (auto& callback : std::exchange(model.goneCallbacks, {}))
      callback.reset();
    model.goneItems.clear();
  }
  --model.running;
}

/// After an exception the validator is told to forget the operation's own groups, and records of changes that were
/// never sent are dropped. What was there before stays.
void Model::Run::giveBack()
{
  std::set<std::string> found;
  std::set<std::string> own;
  for (const std::string& group : model.groups)
    (model.lastingGroups.count(group) != 0 ? found : own).insert(group);
  model.groups = found;
  for (const std::string& group : own)
  {
    try
    {
      if (model.validator != nullptr)
        model.validator->clearGroup(group);
    }
    catch (...)
    {
      // The exception that is on its way is the one that counts.
    }
  }
  // Not what the validator's own calls of the manager left.
  model.groups = found;
  model.records.resize(std::min(model.records.size(), model.lastingRecords));
}

Model::~Model()
{
  const CriticalSection lock(semaphore);
  trace(5, "deleting sdm");
  clearAllManagedData();
}

void Model::setup(SvcRTEContext* newContext, MgmtAgentIfc* newAgent, const std::string& name,
                  ValidatorIfc* newValidator)
{
  context = newContext;
  agent = newAgent;
  serviceName = name;
  validator = newValidator;
}

void Model::setStartup(bool first)
{
  startup = first;
}

DataAccessServiceIfc* Model::dataAccess()
{
  return service(dasFound, "DataAccessServiceIfc");
}

LocalMgmtIfc* Model::store()
{
  return service(storeFound, "LocalMgmtIfc");
}

bool Model::ready()
{
  if (store() == nullptr)
    return false;
  return store()->registerService(serviceName, agent, 1);
}

void Model::addSetter(const Setter& setter)
{
  const Run run(*this);
  if (setter.name == nullptr)
  {
    say(2, "addSetter setter without a name");
    return;
  }
  setters.insert({setter.name, setter.setter});
}

void Model::addGetter(const Getter& getter)
{
  const Run run(*this);
  if (getter.name == nullptr)
  {
    say(2, "addGetter getter without a name");
    return;
  }
  getters.insert({getter.name, getter.getter});
}

template <typename Callback>
void Model::discard(std::map<std::string, Callback*>& callbacks)
{
  const Run run(*this);
  std::set<Callback*> discarded;
  for (const auto& [name, callback] : std::exchange(callbacks, {}))
  {
    // One object may have several names.
    if (discarded.insert(callback).second)
      goneCallbacks.push_back(std::shared_ptr<Callback>(callback));
  }
}

void Model::deleteSetters()
{
  discard(setters);
}

void Model::deleteGetters()
{
  discard(getters);
}

ManagedDataItem* Model::getItem(const std::string& name)
{
  const Run run(*this);
  const auto found = local.find(name);
  return found == local.end() ? nullptr : found->second.get();
}

ManagedDataItem* Model::getPublishedItem(const std::string& name)
{
  const Run run(*this);
  const auto found = published.find(name);
  return found == published.end() ? nullptr : found->second.get();
}

bool Model::isItemManaged(const std::string& name) const
{
  for (const Item& item : items)
  {
    if (item->dasItem == name)
      return true;
  }
  return false;
}

void Model::clearAllManagedData()
{
  const Run run(*this);
  dasImport.clear();
  localImport.clear();
  published.clear();
  local.clear();
  goneItems.insert(goneItems.end(), items.begin(), items.end());
  items.clear();
  // Their number is kept, for the line that counts them.
  for (auto& item : changed)
    item.reset();
}

} // namespace judge
