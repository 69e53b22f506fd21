#include <ManageableData.h>
#include <ServiceDataManagerIfc.h>
#include <fstream>
#include <host/Device.h>
#include <iostream>

struct Volume : ManagedItemSetter
{
  bool setValue(const std::string& value, const std::string&, std::string& error) override
  {
    std::cout << "volume " << value << "\n";
    error = value.size() == 1 ? "" : "must be one digit";
    return error.empty();
  }
};

int main()
{
  if (!std::ifstream("CommsSettings.csv")) // phone.volume,Audio,Volume,,,5,setVolume,,,,,
  {
    std::cerr << "the item map CommsSettings.csv is not in the current folder; it lies beside main.cpp\n";
    return 1;
  }
  host::Device device({"device"}); // stands in for the device's framework
  device.das().provision({{"Audio", "", {"Volume"}, {}}});

  const auto manager = makeServiceDataManager();
  manager->setup(&device.context(), nullptr, "phone", nullptr);
  manager->addSetter({"setVolume", new Volume}); // the manager's from here on
  manager->ready();                              // tells the local management store who is there
  manager->initialise("CommsItemMap");           // reads the map, the default and what the database holds

  ManageableData request;
  request.populate("phone.volume", "phone.volume", "7");
  const bool taken = manager->setData(request);
  manager->deleteSetters(); // when the service goes down
  return taken ? 0 : 1;
}
