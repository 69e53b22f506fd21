#include <ManageableData.h>
#include <ServiceDataManagerIfc.h>
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
  host::Device device({"device"}); // stands in for the device's framework
  device.das().provision({{"Audio", "", {"Volume"}, {}}});
  Volume volume;
  const auto manager = makeServiceDataManager();
  manager->setup(&device.context(), nullptr, "phone", nullptr);
  manager->addSetter({"setVolume", &volume});
  manager->initialise("CommsItemMap"); // CommsSettings.csv: phone.volume,Audio,Volume,,,5,setVolume,,,,,
  ManageableData request;
  request.populate("phone.volume", "phone.volume", "7");
  return manager->setData(request) ? 0 : 1;
}
