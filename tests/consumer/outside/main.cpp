// A service from outside: sets a value, starts a second time and finds it in the database.
#include <ManageableData.h>
#include <ServiceDataManagerIfc.h>
#include <host/Device.h>

#include <fstream>
#include <iostream>
#include <string>

// The class behind the interface stays inside the library: the factory is the way in.
#if __has_include(<ServiceDataManager.h>) || __has_include(<ServiceDataManager/ServiceDataManager.h>)
#error "the manager's class is not for others to see"
#endif

namespace
{

class Volume : public ManagedItemSetter
{
public:
  bool setValue(const std::string& value, const std::string&, std::string& error) override
  {
    if (value.size() != 1)
    {
      error = "must be one digit";
      return false;
    }
    current = value;
    return true;
  }

  std::string current;
};

bool sets(ServiceDataManagerIfc& manager, const std::string& value)
{
  ManageableData request;
  request.populate("phone.volume", "phone.volume", value);
  return manager.setData(request) && request.isRejectListEmpty();
}

/// One life of the service; the value that it came up with.
std::string live(const std::string& newValue, bool expected)
{
  host::Device device({"device"});
  device.das().provision({{"Audio", "", {"Volume"}, {}}});
  const auto manager = makeServiceDataManager();
  auto* volume = new Volume; // the manager's, until deleteSetters
  manager->setup(&device.context(), nullptr, "phone", nullptr);
  manager->addSetter({"setVolume", volume});
  manager->initialise("CommsItemMap");
  std::string cameUpWith = volume->current;
  if (sets(*manager, newValue) != expected)
    cameUpWith = "a wrong answer to " + newValue;
  manager->deleteSetters();
  return cameUpWith;
}

} // namespace

int main()
{
  std::ofstream("CommsSettings.csv") << "phone.volume,Audio,Volume,,,5,setVolume,,,,,\n";
  std::string lives = live("7", true);
  lives += " " + live("loud", false);
  lives += " " + live("3", true);
  std::cout << lives << "\n";
  return lives == "5 7 7" ? 0 : 1;
}
