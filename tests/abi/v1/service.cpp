// A service of version 1. It is compiled against the headers beside it, as they were released, and never changes with
// the library: it stands for the services on devices in the field that get a newer library beneath them. It calls every
// operation of the manager once or more and tells what came of it.
#include <dlfcn.h>

#include "Framework.h"

namespace
{

using v1::tell;

std::string yes(bool answer)
{
  return answer ? "yes" : "no";
}

/// The whole set-up of the service.
struct Service
{
  Service()
  {
    store.entries = {{"/item[1]/rootId", "volume"}, {"/item[1]/dasSchema", "Audio"},   {"/item[1]/dasItem", "Volume"},
                     {"/item[1]/setter", "volume"}, {"/item[1]/getter", "volume"},     {"/item[1]/default", "5"},
                     {"/item[1]/userData", "1"},    {"/item[2]/rootId", "tone"},       {"/item[2]/dasSchema", "Audio"},
                     {"/item[2]/dasItem", "Tone"},  {"/item[2]/setter", "tone"},       {"/item[2]/default", "bell"},
                     {"/item[2]/userData", "1"},    {"/item[2]/isGroupItem", "Sound"}, {"/item[3]/rootId", "name"},
                     {"/item[3]/setter", "name"},   {"/item[3]/default", "desk"},      {"name", "hall"}};
    context.services = {{"DataAccessServiceIfc", &das},
                        {"PhysicalInterfaceServiceIfc", &interfaces},
                        {"LocalMgmtIfc", &store},
                        {"SecurityLogServiceIfc", &securityLog}};
    manager->setup(&context, &agent, "phone", &validator);
    manager->addSetter({"volume", new v1::Setter("volume", volume)});
    manager->addSetter({"tone", new v1::Setter("tone", validator.tone)});
    manager->addSetter({"name", new v1::Setter("name", name)});
    manager->addGetter({"volume", new v1::Getter(volume)});
  }

  void set(const std::string& rootId, const std::string& value)
  {
    ManageableData data;
    data.populate(rootId, rootId, value);
    const bool done = manager->setData(data);
    tell("set done " + yes(done) + ", unrefused " + yes(data.isRejectListEmpty()));
  }

  void showItem(const ManagedDataItem* item)
  {
    if (item == nullptr)
      return tell("no item");
    tell("item " + item->rootId + "|" + item->dasSchema + "|" + item->dasItem + "|" + item->dasIndexName + "|" +
         item->dasIndexValue + "|" + item->defaultValue + "|" + item->isGroupItem + "|" + item->dasEncrypted + "|" +
         yes(item->setter != nullptr) + "|" + yes(item->getter != nullptr));
  }

  v1::Das das;
  v1::Interfaces interfaces;
  v1::Store store;
  v1::SecurityLog securityLog;
  v1::Context context;
  v1::Validator validator;
  v1::Agent agent;
  std::string volume = "1";
  std::string name;
  std::unique_ptr<ServiceDataManagerIfc> manager = makeServiceDataManager();
};

void start(Service& service)
{
  service.manager->initialise("map");
  tell("ready " + yes(service.manager->ready()));
  service.showItem(service.manager->getPublishedItem("volume"));
  service.showItem(service.manager->getPublishedItem("tone"));
  service.showItem(service.manager->getItem("name"));
  service.showItem(service.manager->getItem("volume"));
}

void operate(Service& service)
{
  service.set("volume", "7");
  service.set("volume", "99");
  service.set("tone", "ding");
  service.set("tone", "noise");
  ManageableData asked;
  asked.addRootId("volume", nullptr);
  asked.addRootId("tone", nullptr);
  tell("get " + yes(service.manager->getData(asked)));
  std::string value;
  asked.interogate("tone", "tone", value);
  tell("tone " + value);
  ManageableData changed;
  changed.populate("name", "name", "door");
  service.manager->manageableDataChanged(changed);
  service.manager->importItemFromDAS("volume", value);
  tell("imported " + value);
  tell("defaults " + yes(service.manager->setDefaultUserData()));
  service.manager->reloadUserData();
}

/// Exceptions cross the library in both directions, the C parser within it included.
void fail(Service& service)
{
  try
  {
    service.das.reading = R"(<Schema name="Audio"><ReasonForMessage>read_response</ReasonForMessage>)"
                          R"(<Volume>throw</Volume></Schema>)";
    service.manager->initialiseWithoutSettingDefaultData("map", "tone");
  }
  catch (const std::runtime_error& error)
  {
    tell(std::string("caught ") + error.what());
  }
  try
  {
    std::string value;
    service.das.reading = "Volume";
    service.manager->importItemFromDAS("volume", value);
  }
  catch (const std::out_of_range&)
  {
    tell("caught out_of_range");
  }
}

/// From a file in the working directory: with the defaults of this variant, and with an item for the security log.
void startFromFile(Service& service)
{
  std::FILE* map = std::fopen("CommsSettings.csv", "w");
  std::fputs("volume,Audio,Volume,,,5,volume,volume,,,3,\n"
             "forwarding,Audio,CallForwardingAllowed,,,no,name,,,,,\n",
             map);
  std::fclose(map);
  service.das.reading = "";
  service.manager->setStartup(true);
  service.manager->initialise("CommsItemMap");
  service.set("forwarding", "yes");
}

} // namespace

int main()
{
  Dl_info library;
  if (dladdr(dlsym(RTLD_DEFAULT, "DASStartElementHandler"), &library) != 0)
    std::fprintf(stderr, "library %s\n", library.dli_fname);
  Service service;
  start(service);
  operate(service);
  service.manager->setStartup(false);
  service.manager->initialise("map");
  fail(service);
  service.manager->clearAllManagedData();
  service.showItem(service.manager->getPublishedItem("volume"));
  startFromFile(service);
  service.manager->deleteGetters();
  service.manager->deleteSetters();
  service.manager.reset();
  tell("end");
  return 0;
}
