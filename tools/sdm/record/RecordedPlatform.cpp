#include "record/RecordedPlatform.h"

#include <DataAccessServiceIfc.h>
#include <LocalMgmtIfc.h>
#include <ManageableData.h>
#include <SecurityLogServiceIfc.h>

#include <utility>

namespace cli::record
{
namespace
{

constexpr const char* dasName = "DataAccessServiceIfc";
constexpr const char* storeName = "LocalMgmtIfc";
constexpr const char* securityLogName = "SecurityLogServiceIfc";

class RecordedDas : public DataAccessServiceIfc
{
public:
  RecordedDas(DataAccessServiceIfc& realDas, Recorder& itsRecorder) : real(realDas), recorder(itsRecorder)
  {
  }

  std::string sendRequest(const char* request, std::size_t length) override
  {
    recorder.request(std::string(request, length));
    std::string reply = hearing([&] { return real.sendRequest(request, length); },
                                [&](const std::string& thrown) { recorder.replyThrew(thrown); });
    recorder.reply(reply);
    return reply;
  }

private:
  DataAccessServiceIfc& real;
  Recorder& recorder;
};

class RecordedStore : public LocalMgmtIfc
{
public:
  RecordedStore(LocalMgmtIfc& realStore, Recorder& itsRecorder) : real(realStore), recorder(itsRecorder)
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
  bool told(const char* operation, const std::vector<std::string>& rootIds, const Call& call)
  {
    const bool answer = hearing(call, [&](const std::string& thrown)
                                { recorder.store(operation, rootIds, {}, std::nullopt, "", thrown); });
    recorder.store(operation, rootIds, {}, answer, "", std::nullopt);
    return answer;
  }

  template <typename Call>
  bool told(const char* operation, ManageableData& data, const Call& call)
  {
    std::vector<std::string> rootIds;
    data.getRootIds(rootIds);
    const bool answer = hearing(call, [&](const std::string& thrown)
                                { recorder.store(operation, rootIds, {}, std::nullopt, "", thrown); });
    Recorder::Values values;
    for (const std::string& rootId : rootIds)
    {
      std::string value;
      if (data.interogate(rootId, rootId, value))
        values.emplace_back(rootId, value);
    }
    recorder.store(operation, rootIds, values, answer, data.getRootId(), std::nullopt);
    return answer;
  }

  LocalMgmtIfc& real;
  Recorder& recorder;
};

class RecordedSecurityLog : public SecurityLogServiceIfc
{
public:
  RecordedSecurityLog(SecurityLogServiceIfc& realLog, Recorder& itsRecorder) : real(realLog), recorder(itsRecorder)
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
        [&](const std::string& thrown) { recorder.securityRecord(record, failed, thrown); });
    recorder.securityRecord(record, failed, std::nullopt);
  }

private:
  SecurityLogServiceIfc& real;
  Recorder& recorder;
};

} // namespace

RecordedPlatform::RecordedPlatform(host::Device& itsDevice, Recorder& recorder)
    : device(itsDevice),
      das(std::make_unique<RecordedDas>(device.traffic(), recorder)),
      store(std::make_unique<RecordedStore>(device.store(), recorder)),
      securityLog(std::make_unique<RecordedSecurityLog>(device.securityLog(), recorder))
{
  device.context().offer(dasName, das.get());
  device.context().offer(storeName, store.get());
  device.context().offer(securityLogName, securityLog.get());
  host::listenToLog([&recorder](const host::LogLine& line) { recorder.log(line); });
}

RecordedPlatform::~RecordedPlatform()
{
  host::listenToLog({});
  device.context().offer(dasName, &device.traffic());
  device.context().offer(storeName, &device.store());
  device.context().offer(securityLogName, &device.securityLog());
}

} // namespace cli::record
