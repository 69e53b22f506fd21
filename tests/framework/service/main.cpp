// A service of the device: it comes up with its defaults, takes a value, refuses one, and keeps a secret.
#include <ManageableData.h>
#include <RejectReasonsStrings.h>
#include <ServiceDataManagerIfc.h>
#include <standin/Runtime.h>

#include <fstream>
#include <iostream>
#include <string>

namespace
{

class Setter : public ManagedItemSetter
{
public:
  bool setValue(const std::string& value, const std::string&, std::string& error) override
  {
    if (value.size() > 14)
      error = RejectReasonsStrings::out_of_range;
    else
      current = value;
    return value.size() <= 14;
  }

  std::string current;
};

int failures = 0;

void expect(bool right, const char* what)
{
  std::cout << (right ? "ok     " : "not ok ") << what << "\n";
  failures += right ? 0 : 1;
}

bool sets(ServiceDataManagerIfc& manager, const std::string& rootId, const std::string& value)
{
  ManageableData request;
  request.populate(rootId, rootId, value);
  return manager.setData(request);
}

bool lastUpdateHolds(const std::string& text)
{
  return !standin::updates().empty() && standin::updates().back().find(text) != std::string::npos;
}

} // namespace

int main()
{
  std::ofstream("CommsSettings.csv") << "phone.volume,Audio,Volume,,,5,volume,,,,6,\n"
                                        "phone.password,Access,Password,,,none,password,,,,,true\n"
                                        "phone.room,,,,,,room,,,,,\n";
  auto* volume = new Setter;
  auto* password = new Setter;
  auto* room = new Setter;
  const auto manager = makeServiceDataManager();
  manager->setup(&standin::context(), nullptr, "phone", nullptr);
  manager->addSetter({"volume", volume});
  manager->addSetter({"password", password});
  manager->addSetter({"room", room});
  expect(manager->ready(), "registers with the store");
  manager->initialise("CommsItemMap");

  expect(volume->current == "6", "comes up with the alternative default of a unit with two interfaces");
  expect(room->current == "from the store", "takes the store's value");
  expect(standin::subscriptions().size() == 1, "observes the store");
  expect(sets(*manager, "phone.volume", "a<b"), "takes a value");
  expect(volume->current == "a<b" && lastUpdateHolds("<Volume>a&#60;b</Volume>"), "escapes as the framework does");
  expect(standin::securityRecords().size() == 1, "hands over a record where the framework's schema names ask for it");
  expect(!sets(*manager, "phone.volume", "far too long a value"), "refuses a value");
  expect(sets(*manager, "phone.password", "secret"), "takes a secret");
  expect(lastUpdateHolds("<Password>QQ") && !lastUpdateHolds("secret"), "encrypts as the framework does");
  expect(!standin::logLines().empty(), "logs where the framework logs");
  manager->deleteSetters();
  return failures == 0 ? 0 : 1;
}
