#include "Callbacks.h"

#include <stdexcept>

#include <ManageableData.h>
#include <RejectReasonsStrings.h>

#include "Values.h"

namespace threads
{

std::string refusalOf(const std::string& value)
{
  const std::string verb = verbOf(value);
  if (verb == "refuse")
    return "refused " + value;
  if (verb == "same")
    return RejectReasonsStrings::not_changed;
  return verb == "repeat" ? RejectReasonsStrings::unchanged_data : "";
}

std::string groupRefusalOf(const std::string& request)
{
  return "the group of " + request + " is wrong";
}

bool Setter::setValue(const std::string& value, const std::string& indexValue, std::string& error)
{
  world.violations.expect(indexValue == item.row || item.isLocal(), "setter of another row of " + item.rootId);
  const std::string verb = verbOf(value);
  ++heard().setterCalls[item.rootId + "=" + value];
  if (verb == "throw")
  {
    heard().callbackThrew = true;
    throw std::runtime_error("setter throws at " + value);
  }
  if (verb == "callback")
    callBack();
  if (verb == "renew")
    renew();
  error = refusalOf(value);
  if (verb == "refuse" || (item.isLocal() && value.empty()))
    return false;
  take(verb == "callback" || verb == "renew" ? "default" : value);
  return verb != "same";
}

void Setter::take(const std::string& value)
{
  if (item.group.empty())
    world.live[item.rootId] = value;
  else
    world.validator.stage(item.rootId, value);
}

/// The lock lets the thread that holds it in again.
void Setter::callBack()
{
  ManageableData inner;
  inner.addRootId("direct.a", nullptr);
  world.manager->getData(inner);
  world.manager->getPublishedItem("direct.a");
  world.manager->clearAllManagedData();
  world.manager->setStartup(true);
  world.manager->initialise("CommsItemMap");
}

/// Nobody else can be inside meanwhile, so nobody meets callbacks that are gone.
void Setter::renew()
{
  ++world.renewals;
  ServiceDataManagerIfc& manager = *world.manager;
  manager.clearAllManagedData();
  manager.deleteSetters();
  manager.deleteGetters();
  world.registerCallbacks();
  manager.setStartup(true);
  manager.initialise("LoadedMap");
}

std::string Getter::getValue(const std::string& indexValue)
{
  world.violations.expect(indexValue == item.row, "getter of another row of " + item.rootId);
  const auto found = world.live.find(item.rootId);
  return found == world.live.end() ? "default" : found->second;
}

} // namespace threads
