#include "Load.h"

#include <algorithm>
#include <exception>
#include <numeric>

#include <ManageableData.h>

#include "Callbacks.h"
#include "Items.h"
#include "Values.h"

namespace threads
{
namespace
{

bool isOrdinary(const Item& item)
{
  return !item.isLocal() && item.group.empty() && item.schema != "Pair" && item.rootId != renewal;
}

} // namespace

const std::array<Kind, kindCount>& kinds()
{
  static const std::array<Kind, kindCount> all = {
      {{"setData", 180, &Worker::set},
       {"setData, group", 80, &Worker::setGroup},
       {"setData, pair", 60, &Worker::setPair},
       {"setData, callback calls back", 8, &Worker::renew},
       {"getData", 150, &Worker::get},
       {"getData, pair", 80, &Worker::getPair},
       {"manageableDataChanged", 60, &Worker::change},
       {"initialise", 20, &Worker::initialise},
       {"initialiseWithoutSettingDefaultData", 10, &Worker::initialiseKeeping},
       {"setStartup", 40, &Worker::setStartup},
       {"getItem, getPublishedItem", 80, &Worker::look},
       {"clearAllManagedData", 8, &Worker::clear},
       {"setDefaultUserData", 40, &Worker::resetUserData},
       {"reloadUserData", 40, &Worker::reloadUserData},
       {"importItemFromDAS", 60, &Worker::import},
       {"addGetter, addSetter", 40, &Worker::addCallbacks},
       {"ready", 20, &Worker::ready},
       {"a service goes or comes", 24, &Worker::turnWeather}}};
  return all;
}

void Tally::add(const Tally& other)
{
  for (std::size_t i = 0; i < kindCount; ++i)
    operations[i] += other.operations[i];
  thrown += other.thrown;
  itemsSet += other.itemsSet;
  itemsUnknown += other.itemsUnknown;
  reasons += other.reasons;
  valuesRead += other.valuesRead;
}

std::size_t Tally::total() const
{
  return std::accumulate(operations.begin(), operations.end(), std::size_t{0});
}

Worker::Worker(World& itsWorld, int itsNumber, std::uint64_t seed)
    : world(itsWorld),
      manager(*itsWorld.manager),
      number(itsNumber),
      random(seed * 1000003U + static_cast<std::uint64_t>(itsNumber))
{
}

void Worker::work(std::size_t operations, bool withReady)
{
  const unsigned sum =
      std::accumulate(kinds().begin(), kinds().end(), 0U, [](unsigned all, const Kind& k) { return all + k.weight; });
  while (operations > 0)
  {
    auto place = static_cast<unsigned>(below(sum));
    std::size_t kind = 0;
    for (; place >= kinds()[kind].weight; ++kind)
      place -= kinds()[kind].weight;
    if (kinds()[kind].run == &Worker::ready && !withReady)
      continue;
    try
    {
      (this->*kinds()[kind].run)();
    }
    catch (const std::exception&)
    {
      ++tally.thrown;
    }
    ++tally.operations[kind];
    --operations;
  }
}

bool Worker::chance(unsigned percent)
{
  return below(100) < percent;
}

std::size_t Worker::below(std::size_t count)
{
  return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
}

std::string Worker::newValue(const std::string& verb)
{
  return "T" + std::to_string(number) + "-" + std::to_string(requests) + "-" + verb;
}

std::string Worker::anyRootId()
{
  return items()[below(items().size())].rootId;
}

void Worker::set()
{
  static const std::vector<std::string> ordinary = rootIds(isOrdinary);
  static const std::vector<std::string> verbs = {"accept", "accept", "refuse", "same", "repeat"};
  ++requests;
  ManageableData data;
  for (const std::string& rootId : ordinary)
  {
    if (chance(40))
      data.populate(rootId, rootId, newValue(verbs[below(verbs.size())]));
  }
  if (chance(10))
    data.populate("nobody.knows", "nobody.knows", newValue("accept"));
  if (chance(4))
    data.populate("direct.c", "direct.c", newValue("throw"));
  send(data);
}

void Worker::setGroup()
{
  static const std::vector<std::string> group = rootIds([](const Item& item) { return !item.group.empty(); });
  ++requests;
  ManageableData data;
  const std::size_t bad = chance(30) ? below(group.size()) : group.size();
  for (std::size_t i = 0; i < group.size(); ++i)
    data.populate(group[i], group[i], newValue(i == bad ? "badgroup" : "accept"));
  send(data);
}

void Worker::setPair()
{
  ++requests;
  ManageableData data;
  data.populate("pair.left", "pair.left", newValue("accept"));
  data.populate("pair.right", "pair.right", newValue("accept"));
  send(data);
}

void Worker::renew()
{
  ++requests;
  ManageableData data;
  data.populate(renewal, renewal, newValue(chance(50) ? "renew" : "callback"));
  heard() = {};
  manager.setData(data);
}

void Worker::get()
{
  ManageableData data;
  for (const Item& item : items())
  {
    if (chance(30))
      data.addRootId(item.rootId, nullptr);
  }
  manager.getData(data);
  std::vector<std::string> asked;
  data.getRootIds(asked);
  for (const std::string& rootId : asked)
  {
    std::string value;
    if (!data.interogate(rootId, rootId, value))
      continue;
    ++tally.valuesRead;
    const Item* item = findItem(rootId);
    world.violations.expect(isWhole(value) || (item->userData && value.empty()), rootId + " was read as " + value);
  }
}

/// Both sides are always set together, so they are equal whenever nobody is at work.
void Worker::getPair()
{
  ManageableData data;
  data.addRootId("pair.left", nullptr);
  data.addRootId("pair.right", nullptr);
  manager.getData(data);
  std::string left;
  std::string right;
  const bool leftThere = data.interogate("pair.left", "pair.left", left);
  const bool rightThere = data.interogate("pair.right", "pair.right", right);
  world.violations.expect(leftThere == rightThere && left == right, "the pair is " + left + " and " + right);
  tally.valuesRead += leftThere ? 2 : 0;
}

void Worker::change()
{
  ++requests;
  ManageableData data;
  const std::string rootId = chance(50) ? "local.i" : "local.j";
  const std::string value = newValue("accept");
  data.populate(rootId, rootId, value);
  heard() = {};
  manager.manageableDataChanged(data);
  world.violations.expect(heard().setterCalls[rootId + "=" + value] <= 1, rootId + " heard twice of " + value);
}

void Worker::initialise()
{
  manager.initialise(chance(50) ? "CommsItemMap" : "LoadedMap");
}

void Worker::initialiseKeeping()
{
  manager.initialiseWithoutSettingDefaultData("CommsItemMap", chance(50) ? "direct." : "row");
}

void Worker::setStartup()
{
  manager.setStartup(chance(80));
}

void Worker::look()
{
  // The items may be gone the next moment, so nobody may look at them.
  const bool local = manager.getItem("direct.a") != nullptr;
  const bool published = manager.getPublishedItem("local.i") != nullptr;
  world.violations.expect(!local && !published, "an item stands in the wrong index");
  manager.getItem("local.i");
  manager.getPublishedItem(anyRootId());
}

void Worker::clear()
{
  manager.clearAllManagedData();
}

void Worker::resetUserData()
{
  manager.setDefaultUserData();
}

void Worker::reloadUserData()
{
  manager.reloadUserData();
}

void Worker::import()
{
  const std::string rootId = anyRootId();
  std::string value = "as it was";
  manager.importItemFromDAS(rootId, value);
  const Item* item = findItem(rootId);
  world.violations.expect(value.empty() || item->encrypted || isWhole(value), rootId + " was imported as " + value);
}

/// The names are taken, so the first ones stay and these remain ours.
void Worker::addCallbacks()
{
  const Item& item = items()[below(items().size())];
  Setter setter(world, item);
  Getter getter(world, item);
  manager.addSetter({("set " + item.rootId).c_str(), &setter});
  manager.addGetter({("get " + item.rootId).c_str(), &getter});
}

void Worker::ready()
{
  manager.ready();
}

void Worker::turnWeather()
{
  Weather& weather = world.weather;
  if (chance(60))
    return weather.clear();
  weather.das = static_cast<int>(below(4));
  weather.store = static_cast<int>(below(3));
  weather.securityLog = static_cast<int>(below(2));
  weather.hidden = static_cast<unsigned>(below(16));
}

} // namespace threads
