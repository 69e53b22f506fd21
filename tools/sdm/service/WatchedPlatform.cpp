// Each service of the device is wrapped in one that tells its listener of every call.
#include "WatchedPlatform.h"

#include <ManageableData.h>

#include <utility>

namespace cli
{
namespace
{

class WatchedStore : public LocalMgmtIfc
{
public:
  WatchedStore(LocalMgmtIfc& itsStore, CallListener& itsListener) : real(itsStore), listener(itsListener)
  {
  }

  bool registerService(const std::string& serviceName, MgmtAgentIfc* agent, int version) override
  {
    return told("registerService", {serviceName}, [&] { return real.registerService(serviceName, agent, version); });
  }

  bool lookupData(ManageableData& data) override
  {
    return told("lookupData", data, [&] { return real.lookupData(data); });
  }

  bool subscribe(std::list<std::string>& rootIds, MgmtAgentIfc* agent) override
  {
    return told("subscribe", {rootIds.begin(), rootIds.end()}, [&] { return real.subscribe(rootIds, agent); });
  }

  bool publishData(ManageableData& data) override
  {
    return told("publishData", data, [&] { return real.publishData(data); });
  }

  bool checkData(ManageableData& data, void* context) override
  {
    return told("checkData", data, [&] { return real.checkData(data, context); });
  }

private:
  template <typename Call>
  bool told(const char* operation, const std::vector<std::string>& names, const Call& call)
  {
    const bool answer = hearing(call,
                                [&](const std::string& thrown) {
                                  listener.storeEnded({operation, names, {}, std::nullopt, "", thrown});
                                });
    listener.storeEnded({operation, names, {}, answer, "", std::nullopt});
    return answer;
  }

  template <typename Call>
  bool told(const char* operation, ManageableData& data, const Call& call)
  {
    StoreCall heard;
    heard.operation = operation;
    data.getRootIds(heard.names);
    heard.answer = hearing(call,
                           [&](const std::string& thrown)
                           {
                             heard.thrown = thrown;
                             listener.storeEnded(heard);
                           });
    for (const std::string& rootId : heard.names)
    {
      std::string value;
      if (data.interogate(rootId, rootId, value))
        heard.values.emplace_back(rootId, value);
    }
    heard.objection = data.getRootId();
    listener.storeEnded(heard);
    return *heard.answer;
  }

  LocalMgmtIfc& real;
  CallListener& listener;
};

class WatchedSecurityLog : public SecurityLogServiceIfc
{
public:
  WatchedSecurityLog(SecurityLogServiceIfc& itsLog, CallListener& itsListener) : real(itsLog), listener(itsListener)
  {
  }

  void logSecurityEvent(time_t when, int facility, int severity, int eventType, int eventClass, bool failed,
                        std::string record, std::string user, std::string origin) override
  {
    hearing(
        [&]
        {
          real.logSecurityEvent(when, facility, severity, eventType, eventClass, failed, record, std::move(user),
                                std::move(origin));
        },
        [&](const std::string& thrown) {
          listener.recordEnded({record, failed, thrown});
        });
    listener.recordEnded({record, failed, std::nullopt});
  }

private:
  SecurityLogServiceIfc& real;
  CallListener& listener;
};

} // namespace

WatchedPlatform::WatchedPlatform(host::Device& itsDevice, CallListener& itsListener)
    : device(itsDevice),
      listener(itsListener),
      store(std::make_unique<WatchedStore>(device.offeredStore(), listener)),
      securityLog(std::make_unique<WatchedSecurityLog>(device.offeredSecurityLog(), listener))
{
  device.traffic().listen(this);
}

WatchedPlatform::~WatchedPlatform()
{
  device.traffic().listen(nullptr);
}

Executable* WatchedPlatform::findService(const std::string& interfaceName)
{
  Executable* found = device.context().findService(interfaceName);
  listener.serviceSought(interfaceName, found != nullptr);
  if (found == &device.offeredStore())
    return store.get();
  if (found == &device.offeredSecurityLog())
    return securityLog.get();
  return found;
}

void WatchedPlatform::requestBegins(const std::string& request)
{
  listener.requestBegins(request);
}

void WatchedPlatform::exchangeEnded(const host::Exchange& exchange)
{
  listener.exchangeEnded(exchange);
}

} // namespace cli
