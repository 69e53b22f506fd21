#include "Stage.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <stdexcept>

#include <unistd.h>

#include "../unit/ItemLine.h"

namespace misbehaviour
{

namespace
{

using unit::ItemLine;

/// Grouped, indexed, encrypted, of the user; with and without callbacks, and two of the local management store.
const std::vector<ItemLine>& lines()
{
  static const std::vector<ItemLine> all = {
      ItemLine("a").das("Snmp", "A").standard("da").both("a").user(),
      ItemLine("b").das("R", "B").index("I", "2").standard("db").both("b").user().encrypted(),
      ItemLine("c").das("Snmp", "C").standard("dc").set("c"),
      ItemLine("d").das("S", "D").standard("dd").both("d").user().group("good"),
      ItemLine("e").das("S", "E").standard("de").set("e").group("bad"),
      ItemLine("f").das("T", "F").standard("df").encrypted(),
      ItemLine("local").both("local"),
      ItemLine("local-7").set("local-7")};
  return all;
}

/// The working directory of all tests of this program, with the item map in it.
class Directory
{
public:
  Directory()
  {
    std::string pattern = (std::filesystem::temp_directory_path() / "sdm-misbehaviour-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
      throw std::runtime_error("no temporary directory");
    path = pattern;
    std::filesystem::current_path(path);
    std::ofstream map("CommsSettings.csv");
    for (const ItemLine& line : lines())
      map << line.text() << "\n";
    map << "a line without columns\n";
  }

  ~Directory()
  {
    std::filesystem::current_path("/");
    std::filesystem::remove_all(path);
  }

  Directory(const Directory&) = delete;
  Directory& operator=(const Directory&) = delete;

private:
  std::filesystem::path path;
};

std::string answer(const std::string& request)
{
  const auto has = [&](const char* text) { return request.find(text) != std::string::npos; };
  const std::string begin = R"(<?xml version="1.0" encoding="utf-8"?><Schema name=")";
  if (has("update_request"))
    return begin + R"(S"><ReasonForMessage>update_response</ReasonForMessage></Schema>)";
  const std::string kind = R"("><ReasonForMessage>read_response</ReasonForMessage>)";
  if (has("\"Snmp\""))
    return begin + "Snmp" + kind + "<A>ra</A><C>rc</C></Schema>";
  if (has("\"T\""))
    return begin + "T" + kind + "<F>" + recording::encrypted("rf") + "</F></Schema>";
  if (has("\"R\""))
    return begin + "R" + kind + "<Entry><I>2</I><B>" + recording::encrypted("rb") + "</B></Entry></Schema>";
  return begin + "S" + kind + "<D>rd</D><E>re</E></Schema>";
}

std::string text(bool result)
{
  return result ? "true" : "false";
}

/// A callback that is on the stage's list for as long as it lives.
template <typename Callback>
class Counted : public Callback
{
public:
  Counted(const std::string& callbackName, std::map<const void*, std::function<void()>>& living)
      : Callback(callbackName), list(living)
  {
    list.emplace(this, [this] { delete this; });
  }
  ~Counted() override
  {
    list.erase(this);
  }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

private:
  std::map<const void*, std::function<void()>>& list;
};

} // namespace

Stage::Stage(bool loaded) : manager((recording::reset(), std::make_unique<ServiceDataManager>())), access(*manager)
{
  static const Directory directory;
  context.services = {{"DataAccessServiceIfc", &das},
                      {"PhysicalInterfaceServiceIfc", &interfaces},
                      {"LocalMgmtIfc", &store},
                      {"SecurityLogServiceIfc", &securityLog}};
  das.fallback = answer;
  validator.groups["good"].items = {{"d", "D"}, {"nobody", "x"}};
  validator.groups["bad"].valid = false;
  validator.groups["bad"].reason = "bad group";
  fillStore();
  manager->setup(&context, &agent, "phone", &validator);
  registerCallbacks();
  if (loaded)
    load();
  recording::behaviour().openLevel = 6;
  recording::trace().clear();
}

Stage::~Stage()
{
  recording::behaviour().everyCall = nullptr;
  recording::behaviour().everyText = nullptr;
  if (manager != nullptr)
  {
    manager->deleteSetters();
    manager->deleteGetters();
  }
  // A manager that ends does not delete what nobody told it to delete.
  while (!callbacks.empty())
  {
    const std::function<void()> remove = callbacks.begin()->second;
    remove();
  }
}

void Stage::registerCallbacks()
{
  for (const ItemLine& line : lines())
  {
    if (!line.setter.empty() && access.findSetterFunc(line.setter) == nullptr)
    {
      auto* setter = new Counted<recording::Setter>(line.setter, callbacks);
      setter->accepts = line.setter != "c";
      setter->remark = setter->accepts ? "" : "refused";
      manager->addSetter({line.setter.c_str(), setter});
    }
    if (!line.getter.empty() && access.findGetterFunc(line.getter) == nullptr)
    {
      auto* getter = new Counted<recording::Getter>(line.getter, callbacks);
      getter->value = "live " + line.getter;
      manager->addGetter({line.getter.c_str(), getter});
    }
  }
}

void Stage::fillStore()
{
  store.values = {{"local", "stored"}, {"local-7", "seventh"}};
  // The agent is told at once what it subscribes for.
  store.hook = [this]
  {
    if (recording::trace().back().rfind("subscribe", 0) == 0)
      agent.observedDataChanged(*request({"local"}));
  };
  auto& map = store.dictionaries["map"];
  int number = 0;
  for (const ItemLine& line : lines())
  {
    const std::string item = "/item[" + std::to_string(++number) + "]/";
    map[item + "rootId"] = line.rootId;
    map[item + "dasSchema"] = line.dasSchema;
    map[item + "dasItem"] = line.dasItem;
    map[item + "setter"] = line.setter;
    map[item + "getter"] = line.getter;
    map[item + "default"] = line.defaultValue;
    map[item + "userData"] = line.userData;
    map[item + "isGroupItem"] = line.isGroupItem;
  }
}

void Stage::load()
{
  for (const ItemLine& line : lines())
  {
    access.addDataItem(line.rootId, line.dasSchema, line.dasItem, line.dasIndexName, line.dasIndexValue,
                       line.defaultValue, line.setter, line.getter, line.isGroupItem, line.dasEncrypted);
    if (!line.userData.empty())
      access.userDataIds.push_back(line.rootId);
  }
  access.buildIndexes();
}

std::vector<std::string> Stage::traceOf(const Operation& operation)
{
  recording::trace().clear();
  const std::string result = operation.run(*this);
  return withoutLookups(result);
}

std::vector<std::string> Stage::withoutLookups(const std::string& result)
{
  std::vector<std::string> lines = recording::trace();
  // Services are looked up once, which may have been before.
  lines.erase(std::remove_if(lines.begin(), lines.end(),
                             [](const std::string& line) { return line.rfind("findService", 0) == 0; }),
              lines.end());
  lines.push_back("= " + result);
  return lines;
}

std::unique_ptr<ManageableData> Stage::request(const std::vector<std::string>& rootIds)
{
  const recording::UntracedRecords untraced;
  auto data = std::make_unique<ManageableData>();
  for (const std::string& rootId : rootIds)
  {
    std::string value = rootId;
    std::transform(value.begin(), value.end(), value.begin(), [](char c) { return c >= 'a' && c <= 'z' ? c - 32 : c; });
    data->populate(rootId, rootId, value);
  }
  return data;
}

std::string Stage::shown(ManageableData& data)
{
  std::string all = recording::describe(data);
  for (const std::string& reject : recording::rejectReasons(data))
    all += "; " + reject;
  return all;
}

std::vector<std::string> Stage::afterwards(bool anew)
{
  recording::behaviour().everyCall = nullptr;
  recording::behaviour().everyText = nullptr;
  manager->setup(&context, &agent, "phone", &validator);
  if (anew)
  {
    manager->clearAllManagedData();
    registerCallbacks();
    manager->setStartup(true);
  }
  std::vector<std::string> all;
  for (const char* name : {"start", "setData", "getData", "manageableDataChanged", "importItemFromDAS",
                           "setDefaultUserData", "reloadUserData", "ready"})
  {
    if (!anew && name == std::string("start"))
      continue;
    const auto lines = traceOf(operation(name));
    all.insert(all.end(), lines.begin(), lines.end());
  }
  return all;
}

bool Stage::lockIsFree()
{
  auto taken = std::async(std::launch::async, [this] { manager->getItem("local"); });
  if (taken.wait_for(std::chrono::seconds(30)) == std::future_status::ready)
    return true;
  // The thread can not be taken back.
  std::fprintf(stderr, "the lock is held\n");
  std::abort();
}

const std::vector<Operation>& operations()
{
  static const std::vector<Operation> all = {
      {"start", false, true,
       [](Stage& stage)
       {
         stage.manager->initialise("CommsItemMap");
         return std::string();
       }},
      {"startFromDictionary", false, true,
       [](Stage& stage)
       {
         stage.manager->initialise("map");
         return std::string();
       }},
      {"laterStart", true, false,
       [](Stage& stage)
       {
         stage.manager->setStartup(false);
         stage.manager->initialiseWithoutSettingDefaultData("", "c");
         return std::string();
       }},
      {"ready", true, false, [](Stage& stage) { return text(stage.manager->ready()); }},
      {"setData", true, false,
       [](Stage& stage)
       {
         const auto data = stage.request({"a", "b", "c", "d", "e", "f", "nobody"});
         const bool done = stage.manager->setData(*data);
         return text(done) + " " + Stage::shown(*data);
       }},
      {"getData", true, false,
       [](Stage& stage)
       {
         const auto data = stage.request({"a", "c", "f", "nobody"});
         const bool done = stage.manager->getData(*data);
         return text(done) + " " + Stage::shown(*data);
       }},
      {"manageableDataChanged", true, false,
       [](Stage& stage)
       {
         stage.manager->manageableDataChanged(*stage.request({"local", "nobody", "local-7"}));
         return std::string();
       }},
      {"addGetter", true, false,
       [](Stage& stage)
       {
         stage.manager->addGetter({nullptr, nullptr});
         return std::string();
       }},
      {"addSetter", true, false,
       [](Stage& stage)
       {
         stage.manager->addSetter({nullptr, nullptr});
         return std::string();
       }},
      {"getItem", true, false, [](Stage& stage) { return text(stage.manager->getItem("local") != nullptr); }},
      {"getPublishedItem", true, false,
       [](Stage& stage) { return text(stage.manager->getPublishedItem("a") != nullptr); }},
      {"setStartup", true, false,
       [](Stage& stage)
       {
         stage.manager->setStartup(true);
         return std::string();
       }},
      {"setup", true, false,
       [](Stage& stage)
       {
         stage.manager->setup(&stage.context, &stage.agent, "phone", &stage.validator);
         return std::string();
       }},
      {"clearAllManagedData", true, true,
       [](Stage& stage)
       {
         stage.manager->clearAllManagedData();
         return std::string();
       }},
      {"setDefaultUserData", true, false, [](Stage& stage) { return text(stage.manager->setDefaultUserData()); }},
      {"importItemFromDAS", true, false,
       [](Stage& stage)
       {
         std::string value = "before";
         stage.manager->importItemFromDAS("c", value);
         return value;
       }},
      {"deleteGetters", true, true,
       [](Stage& stage)
       {
         stage.manager->deleteGetters();
         return std::string();
       }},
      {"deleteSetters", true, true,
       [](Stage& stage)
       {
         stage.manager->deleteSetters();
         return std::string();
       }},
      {"reloadUserData", true, false,
       [](Stage& stage)
       {
         stage.manager->reloadUserData();
         return std::string();
       }},
      {"end", true, true,
       [](Stage& stage)
       {
         // Until it is gone, callbacks find the manager where it was.
         delete stage.manager.get();
         static_cast<void>(stage.manager.release());
         return std::string();
       }},
  };
  return all;
}

const Operation& operation(const std::string& name)
{
  const auto& all = operations();
  return *std::find_if(all.begin(), all.end(), [&](const Operation& one) { return one.name == name; });
}

const std::vector<std::string>& callsOf(const Operation& operation)
{
  static std::map<std::string, std::vector<std::string>> known;
  std::vector<std::string>& calls = known[operation.name];
  if (calls.empty())
  {
    Stage stage(operation.loaded);
    recording::behaviour().everyCall = [&](const std::string& name) { calls.push_back(name); };
    operation.run(stage);
  }
  return calls;
}

std::size_t timesIn(const std::vector<std::string>& calls, const std::string& name)
{
  return static_cast<std::size_t>(std::count(calls.begin(), calls.end(), name));
}

const std::vector<std::string>& undisturbed(bool anew)
{
  static std::map<bool, std::vector<std::string>> known;
  std::vector<std::string>& lines = known[anew];
  if (lines.empty())
    lines = Stage(true).afterwards(anew);
  return lines;
}

void inCall(const std::string& name, std::size_t position, std::function<void()> action)
{
  auto left = std::make_shared<std::size_t>(position);
  recording::behaviour().everyCall = [=](const std::string& called)
  {
    if (called == name && *left > 0 && --*left == 0)
      action();
  };
}

} // namespace misbehaviour
