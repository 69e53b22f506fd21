#include "Player.h"

#include "Record.h"
#include "Surroundings.h"
#include "Trace.h"

namespace judge
{

namespace
{

using recording::note;
using recording::quoted;

const std::array<const char*, 3> callbackNames = {"k", "l", "m"};

std::string told(bool result)
{
  return result ? "true" : "false";
}

class Player
{
public:
  Player(const Life& lived, const std::function<Candidate()>& make);

  Trace trace;
  void finish();

private:
  void nextStep();
  void perform(const Step& step);
  void called();
  void guarded(const Step& step);
  void operate(const Step& step);
  void happen(const Step& step);
  void setUp(const Step& step);
  void set(const Step& step);
  void addCallback(const Step& step);
  void describe(const ManagedDataItem* item);
  template <typename Operation>
  void withRecord(const Step& step, Operation operation);

  const Life& life;
  Surroundings around;
  Candidate candidate;
  unsigned calls = 0;
  const Step* current = nullptr;
};

Player::Player(const Life& lived, const std::function<Candidate()>& make)
    : life(lived), around((recording::reset(), lived))
{
  recording::Behaviour& behaviour = recording::behaviour();
  behaviour.traceLock = true;
  behaviour.traceRecords = true;
  behaviour.openLevel = static_cast<int>(life.gate);
  behaviour.secret = "secret";
  for (std::size_t i = 0; i < life.groupReasons.size(); ++i)
    around.validator.groups[i % 2 == 0 ? "g" : "h"].reason = life.groupReasons[i];
  for (auto& [name, group] : around.validator.groups)
    group.valid = group.reason.empty();
  for (const MapLine& line : life.map)
  {
    if (!line.columns[9].empty())
      around.validator.groups[line.columns[9]].items.emplace_back(line.columns[0], "held<" + line.columns[0]);
  }
  around.called = [this] { called(); };
  candidate = make();
  candidate.manager->setup(&around.context, &around.agent, "phone",
                           (life.absent & 16U) != 0 ? nullptr : &around.validator);
  for (const char* name : callbackNames)
  {
    candidate.manager->addSetter({name, around.newSetter(name)});
    candidate.manager->addGetter({name, around.newGetter(name)});
  }
  nextStep();
  for (const Step& step : life.steps)
  {
    perform(step);
    note("lock depth " + std::to_string(recording::behaviour().lockDepth));
    nextStep();
  }
}

void Player::finish()
{
  candidate.isItemManaged = nullptr;
  candidate.manager.reset();
  nextStep();
}

void Player::nextStep()
{
  trace.push_back(std::move(recording::trace()));
  recording::trace().clear();
}

void Player::perform(const Step& step)
{
  calls = 0;
  current = &step;
  guarded(step);
  current = nullptr;
}

void Player::guarded(const Step& step)
{
  try
  {
    if (step.what < Do::serviceComes)
      operate(step);
    else
      happen(step);
  }
  catch (const Thrown&)
  {
    note("threw what was thrown on purpose");
  }
  catch (const std::out_of_range&)
  {
    note("threw out_of_range");
  }
}

void Player::called()
{
  if (current == nullptr)
    return;
  const unsigned call = ++calls;
  for (const Incident& incident : current->incidents)
  {
    if (incident.atCall != call)
      continue;
    const std::string where = recording::trace().back();
    note((incident.inner.empty() ? "throws inside " : "calls back inside ") + where);
    if (incident.inner.empty())
      throw Thrown();
    for (const Step& inner : incident.inner)
    {
      if (!incident.letsOut)
        guarded(inner);
      else if (inner.what < Do::serviceComes)
        operate(inner);
      else
        happen(inner);
    }
    note("goes on");
  }
}

template <typename Operation>
void Player::withRecord(const Step& step, Operation operation)
{
  ManageableData data;
  {
    const recording::UntracedRecords untraced;
    for (const auto& [rootId, value] : step.values)
    {
      if (step.number % 4 == 1)
        data.addRootId(rootId, nullptr);
      else
        data.populate(rootId, rootId, value);
    }
  }
  if (step.number % 4 == 3 && !step.values.empty())
    recording::repeatRootId(data, step.values.front().first);
  operation(data);
  for (const std::string& reject : recording::rejectReasons(data))
    note("reject " + reject);
  note("record " + recording::describe(data));
}

void Player::describe(const ManagedDataItem* item)
{
  if (item == nullptr)
  {
    note("result null");
    return;
  }
  const auto* setter = dynamic_cast<const recording::Setter*>(item->setter);
  const auto* getter = dynamic_cast<const recording::Getter*>(item->getter);
  note("result " + quoted(item->rootId) + quoted(item->dasSchema) + quoted(item->dasItem) + quoted(item->dasIndexName) +
       quoted(item->dasIndexValue) + quoted(item->defaultValue) + quoted(setter == nullptr ? "-" : setter->name) +
       quoted(getter == nullptr ? "-" : getter->name) + quoted(item->isGroupItem) + quoted(item->dasEncrypted));
}

void Player::setUp(const Step& step)
{
  candidate.manager->setup((step.number & 1U) != 0 ? nullptr : &around.context,
                           (step.number & 2U) != 0 ? nullptr : &around.agent, step.text,
                           (step.number & 4U) != 0 ? nullptr : &around.validator);
}

/// Under a name, without one, as a name without a callback, and one callback under two names.
void Player::addCallback(const Step& step)
{
  const char* const name = step.number % 6 == 5 ? nullptr : step.text.c_str();
  const std::string other = step.text + "2";
  ServiceDataManagerIfc& manager = *candidate.manager;
  if (step.what == Do::addSetter)
  {
    auto* const setter = step.number % 6 == 4 ? nullptr : around.newSetter(step.text);
    manager.addSetter({name, setter});
    if (step.number % 6 == 3)
      manager.addSetter({other.c_str(), setter});
    return;
  }
  auto* const getter = step.number % 6 == 4 ? nullptr : around.newGetter(step.text);
  manager.addGetter({name, getter});
  if (step.number % 6 == 3)
    manager.addGetter({other.c_str(), getter});
}

void Player::operate(const Step& step)
{
  ServiceDataManagerIfc& manager = *candidate.manager;
  switch (step.what)
  {
  case Do::setup:
    return setUp(step);
  case Do::initialise:
    return manager.initialise(step.text);
  case Do::initialiseSparing:
    return manager.initialiseWithoutSettingDefaultData(step.text, step.second);
  case Do::ready:
    return note("result " + told(manager.ready()));
  case Do::setData:
    return withRecord(step, [&](ManageableData& data) { note("result " + told(manager.setData(data))); });
  case Do::getData:
    return withRecord(step, [&](ManageableData& data) { note("result " + told(manager.getData(data))); });
  case Do::dataChanged:
    return withRecord(step, [&](ManageableData& data) { manager.manageableDataChanged(data); });
  case Do::addSetter:
  case Do::addGetter:
    return addCallback(step);
  case Do::getItem:
    return describe(manager.getItem(step.text));
  case Do::getPublishedItem:
    return describe(manager.getPublishedItem(step.text));
  case Do::setStartup:
    return manager.setStartup(step.number % 2 == 1);
  case Do::clear:
    return manager.clearAllManagedData();
  case Do::setDefaultUserData:
    return note("result " + told(manager.setDefaultUserData()));
  case Do::importItem:
  {
    std::string value = step.second;
    manager.importItemFromDAS(step.text, value);
    return note("result " + quoted(value));
  }
  case Do::deleteGetters:
    // Items keep their pointers, so whoever deletes callbacks clears the items too.
    manager.clearAllManagedData();
    return manager.deleteGetters();
  case Do::deleteSetters:
    manager.clearAllManagedData();
    return manager.deleteSetters();
  case Do::reloadUserData:
    return manager.reloadUserData();
  default:
    return note("result " + told(candidate.isItemManaged(step.text)));
  }
}

void Player::happen(const Step& step)
{
  const bool refuses = step.what == Do::storeRefuses;
  switch (step.what)
  {
  case Do::serviceComes:
    return around.place(step.number, around.own(step.number));
  case Do::serviceGoes:
    return around.place(step.number, nullptr);
  case Do::serviceIsAnother:
    return around.place(step.number, around.own(step.number + 1));
  case Do::storeRefuses:
  case Do::storeAccepts:
    around.store.registers = !refuses;
    around.store.looksUp = !refuses || step.number % 4 != 0;
    around.store.subscribes = !refuses || step.number % 4 != 1;
    around.store.publishes = !refuses || step.number % 4 != 2;
    around.store.objection.clear();
    return;
  case Do::storeObjects:
    around.store.objection = step.text;
    return;
  case Do::storeHolds:
    around.store.values[step.text] = step.second;
    return;
  case Do::groupFails:
    around.validator.groups[step.text].valid = false;
    around.validator.groups[step.text].reason = step.second;
    return;
  case Do::groupPasses:
    around.validator.groups[step.text] = {true, step.second, step.values};
    return;
  case Do::liveValue:
    around.live[{step.text, ""}] = step.second;
    return;
  case Do::interfaceCount:
    around.interfaces.count = step.number % 6;
    return;
  case Do::gate:
    recording::behaviour().openLevel = static_cast<int>(step.number % 7);
    return;
  case Do::encryption:
    recording::behaviour().encryptionFails = step.number % 2 == 1;
    return;
  case Do::mapFile:
  {
    const MapLine line{{step.text, step.second, "Added", "", "", "new", "k", "l", "u", "", "", ""}, LineShape::whole};
    return around.writeMap(&line);
  }
  default:
    return around.removeMap();
  }
}

} // namespace

Trace play(const Life& life, const std::function<Candidate()>& make)
{
  Player player(life, make);
  player.finish();
  return player.trace;
}

} // namespace judge
