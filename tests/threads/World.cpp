#include "World.h"

#include <array>
#include <stdexcept>

#include "Callbacks.h"
#include "Items.h"

namespace threads
{

void Violations::add(const std::string& text)
{
  const std::lock_guard<std::mutex> hold(mutex);
  texts.push_back(text);
}

void Violations::expect(bool holds, const std::string& text)
{
  if (!holds)
    add(text);
}

std::vector<std::string> Violations::all() const
{
  const std::lock_guard<std::mutex> hold(mutex);
  return texts;
}

void Weather::clear()
{
  das = fine;
  store = fine;
  securityLog = fine;
  hidden = 0;
}

Heard& heard()
{
  static thread_local Heard mine;
  return mine;
}

World::World() : manager(makeServiceDataManager())
{
  manager->setup(this, &agent, "LoadedService", &validator);
  registerCallbacks();
}

World::~World()
{
  manager->deleteSetters();
  manager->deleteGetters();
}

Executable* World::findService(const std::string& interfaceName)
{
  const std::array<std::pair<const char*, Executable*>, 4> services = {{{"DataAccessServiceIfc", &das},
                                                                        {"PhysicalInterfaceServiceIfc", &interfaces},
                                                                        {"LocalMgmtIfc", &store},
                                                                        {"SecurityLogServiceIfc", &securityLog}}};
  const unsigned hidden = weather.hidden;
  for (unsigned i = 0; i < services.size(); ++i)
  {
    if (interfaceName == services[i].first)
      return (hidden & (1U << i)) != 0 ? nullptr : services[i].second;
  }
  return nullptr;
}

void World::registerCallbacks()
{
  for (const Item& item : items())
  {
    const std::string setter = "set " + item.rootId;
    const std::string getter = "get " + item.rootId;
    manager->addSetter({setter.c_str(), std::make_unique<Setter>(*this, item).release()});
    manager->addGetter({getter.c_str(), std::make_unique<Getter>(*this, item).release()});
  }
}

} // namespace threads
