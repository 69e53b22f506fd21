#include "Life.h"

#include <algorithm>
#include <fstream>

#include <ManageableData.h>
#include <RejectReasonsStrings.h>
#include <host/DeviceLog.h>
#include <host/RejectReasons.h>

namespace scenario
{

namespace
{

const char* const itemMap = "phone.volume,Audio,Volume,,,5,volume,volume,user,,,\n"
                            "phone.model,Audio,Model,,,unknown,,,,,,\n"
                            "line.label-1,Lines,Label,Number,1,Line 1,label,label,user,,,\n"
                            "line.label-2,Lines,Label,Number,2,Line 2,label,label,,,,\n"
                            "net.address,Net,Address,,,192.0.2.10,address,address,user,ip,,\n"
                            "net.gateway,Net,Gateway,,,192.0.2.1,gateway,gateway,user,ip,,\n"
                            "sip.password,SipBaseSettings,Password,,,,password,password,,,,true\n"
                            "screen.brightness,,,,,,brightness,brightness,,,,\n";

const char* const declaration = R"(<?xml version="1.0" encoding="utf-8"?>)";

std::string keyOf(const std::string& setting, const std::string& row)
{
  return row.empty() ? setting : setting + "/" + row;
}

std::string networkOf(const std::string& address)
{
  return address.substr(0, address.rfind('.'));
}

} // namespace

class Phone::Setter : public ManagedItemSetter
{
public:
  Setter(Phone& owner, std::string itsSetting) : phone(owner), setting(std::move(itsSetting))
  {
  }

  bool setValue(const std::string& value, const std::string& indexValue, std::string& error) override
  {
    if (setting == "address" || setting == "gateway")
    {
      phone.staged["net." + setting] = value;
      return true;
    }
    if (setting == "volume" && (value.size() != 1 || value < "0" || value > "9"))
    {
      error = "must be a digit";
      return false;
    }
    std::string& current = phone.live[keyOf(setting, indexValue)];
    error = current == value && setting == "label" ? RejectReasonsStrings::unchanged_data : "";
    current = value;
    return true;
  }

private:
  Phone& phone;
  const std::string setting;
};

class Phone::Getter : public ManagedItemGetter
{
public:
  Getter(Phone& owner, std::string itsSetting) : phone(owner), setting(std::move(itsSetting))
  {
  }

  std::string getValue(const std::string& indexValue) override
  {
    return phone.live[keyOf(setting, indexValue)];
  }

private:
  Phone& phone;
  const std::string setting;
};

void Phone::registerCallbacks(ServiceDataManagerIfc& itsManager)
{
  manager = &itsManager;
  for (const char* setting : {"volume", "label", "address", "gateway", "password", "brightness"})
  {
    setters.push_back(std::make_unique<Setter>(*this, setting));
    manager->addSetter({setting, setters.back().get()});
    getters.push_back(std::make_unique<Getter>(*this, setting));
    manager->addGetter({setting, getters.back().get()});
  }
}

std::vector<std::pair<std::string, std::string>> Phone::getValidGroupItems(const std::string&)
{
  return {staged.begin(), staged.end()};
}

void Phone::clearGroup(const std::string&)
{
  staged.clear();
}

bool Phone::validateGroup(std::string& reason, const std::string&)
{
  const auto pending = [this](const std::string& setting)
  { return staged.count("net." + setting) != 0 ? staged["net." + setting] : live[setting]; };
  if (networkOf(pending("address")) != networkOf(pending("gateway")))
  {
    reason = "the gateway is in another network";
    return false;
  }
  for (const auto& [rootId, value] : staged)
    live[rootId.substr(4)] = value;
  return true;
}

void Phone::reloadGroup(const std::string&)
{
}

void Phone::observedDataChanged(ManageableData& data)
{
  manager->manageableDataChanged(data);
}

PowerOn::PowerOn(const std::filesystem::path& folder)
    : device({folder, 1, 6, 0}),
      line(device.traffic()),
      manager(makeServiceDataManager()),
      logFile(folder / "log" / "device.log")
{
  device.das().provision({{"Audio", "", {"Volume", "Model"}, {}},
                          {"Lines", "Number", {"Label"}, {"1", "2"}},
                          {"Net", "", {"Address", "Gateway"}, {}},
                          {"SipBaseSettings", "", {"Password"}, {}}});
  context.offer("DataAccessServiceIfc", &line);
  context.offer("LocalMgmtIfc", &device.store());
  context.offer("SecurityLogServiceIfc", &device.securityLog());
  manager->setup(&context, &phone, "phone", &phone);
  phone.registerCallbacks(*manager);
  log();
}

PowerOn::~PowerOn()
{
  device.store().forgetAgent(&phone);
}

void PowerOn::start()
{
  manager->initialise("CommsItemMap");
}

void PowerOn::restart()
{
  manager->setStartup(false);
  manager->initialise("CommsItemMap");
}

std::string PowerOn::set(const std::vector<std::pair<std::string, std::string>>& values)
{
  ManageableData data;
  for (const auto& [rootId, value] : values)
    data.populate(rootId, rootId, value);
  std::string outcome = manager->setData(data) ? "done" : "failed";
  for (const host::RejectReason& reject : host::rejectReasons(data))
    outcome += " " + reject.rootId + "|" + reject.name + "|" + reject.reason;
  return outcome;
}

std::string PowerOn::get(const std::string& rootId)
{
  ManageableData data;
  data.addRootId(rootId, nullptr);
  std::string value;
  if (!manager->getData(data) || !data.interogate(rootId, rootId, value))
    return "-";
  return value;
}

std::vector<std::string> PowerOn::requests()
{
  std::vector<std::string> texts;
  for (const host::Exchange& exchange : device.traffic().exchanges())
  {
    if (exchange.number <= exchangesSeen)
      continue;
    exchangesSeen = exchange.number;
    texts.push_back(exchange.request.substr(std::string(declaration).size()));
  }
  return texts;
}

std::vector<std::string> PowerOn::log()
{
  std::ifstream file(logFile);
  std::vector<std::string> texts;
  std::size_t number = 0;
  for (std::string text; std::getline(file, text);)
  {
    if (++number <= linesSeen)
      continue;
    // time, level, module, source:line, text
    const std::size_t level = text.find(' ') + 1;
    const std::size_t module = text.find(' ', level) + 1;
    const std::size_t source = text.find(' ', module) + 1;
    const std::size_t message = text.find(' ', source) + 1;
    if (text.compare(module, source - module, "ServiceDataManager ") == 0)
      texts.push_back(text.substr(level, module - level) + text.substr(message));
  }
  linesSeen = number;
  return texts;
}

Life::Life() : previous(std::filesystem::current_path())
{
  std::string pattern = (std::filesystem::temp_directory_path() / "sdm-life-XXXXXX").string();
  folder = mkdtemp(pattern.data());
  std::filesystem::current_path(folder);
  std::ofstream("CommsSettings.csv") << itemMap;
}

Life::~Life()
{
  std::filesystem::current_path(previous);
  std::filesystem::remove_all(folder);
}

} // namespace scenario
