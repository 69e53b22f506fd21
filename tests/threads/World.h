// Everything around the manager, in memory: its services, its callbacks and its validator.
//
// What the manager reaches only under its lock has no lock here, on purpose: were the manager's missing somewhere, the
// thread sanitizer would see two threads in here, and the checks below would find values of different requests side by
// side. What threads of the load reach by themselves is atomic.
#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include <DataAccessServiceIfc.h>
#include <LocalMgmtIfc.h>
#include <MgmtAgentIfc.h>
#include <PhysicalInterfaceServiceIfc.h>
#include <SecurityLogServiceIfc.h>
#include <ServiceDataManagerIfc.h>
#include <SvcRTEContext.h>
#include <ValidatorIfc.h>

namespace threads
{

/// What went wrong, by any thread.
class Violations
{
public:
  void add(const std::string& text);
  /// Adds when `holds` is false.
  void expect(bool holds, const std::string& text);
  std::vector<std::string> all() const;

private:
  mutable std::mutex mutex;
  std::vector<std::string> texts;
};

/// How the services are just now; changed by any thread at any time.
struct Weather
{
  enum Mode
  {
    fine,
    throws,
    silent, ///< an empty reply, or false
    garbled
  };
  std::atomic<int> das{fine};
  std::atomic<int> store{fine};
  std::atomic<int> securityLog{fine};
  /// Services that the context does not know: a bit each, in the order of their classes below.
  std::atomic<unsigned> hidden{0};

  void clear();
};

/// What callbacks heard of the request that this thread makes; each thread has one of its own.
struct Heard
{
  std::map<std::string, int> setterCalls;
  bool callbackThrew = false;
};
Heard& heard();

class Das : public DataAccessServiceIfc
{
public:
  Das(Violations& found, const Weather& now, std::map<std::string, std::string>& liveValues)
      : violations(found), weather(now), live(liveValues)
  {
  }
  std::string sendRequest(const char* request, size_t length) override;

  /// By root id, encrypted where the item is.
  std::map<std::string, std::string> cells;
  std::size_t updates = 0;

private:
  std::string read(const std::string& schema, const std::string& request) const;
  void update(const std::string& schema, const std::string& body);
  void store(const std::string& schema, const std::string& column, const std::string& row, const std::string& cell);

  Violations& violations;
  const Weather& weather;
  std::map<std::string, std::string>& live;
};

class Interfaces : public PhysicalInterfaceServiceIfc
{
public:
  uint32_t getInterfaceCount() override
  {
    return 1;
  }
};

class Store : public LocalMgmtIfc
{
public:
  Store(Violations& found, const Weather& now, const std::map<std::string, std::string>& liveValues)
      : violations(found), weather(now), live(liveValues)
  {
  }
  bool registerService(const std::string& serviceName, MgmtAgentIfc* agent, int version) override;
  bool lookupData(ManageableData& data) override;
  bool subscribe(std::list<std::string>& rootIds, MgmtAgentIfc* agent) override;
  bool publishData(ManageableData& data) override;
  bool checkData(ManageableData& data, void* context) override;

  std::map<std::string, std::string> published;
  /// The one call that comes without the manager's lock.
  std::atomic<std::size_t> registrations{0};

private:
  bool works() const;

  Violations& violations;
  const Weather& weather;
  const std::map<std::string, std::string>& live;
};

class SecurityLog : public SecurityLogServiceIfc
{
public:
  explicit SecurityLog(const Weather& now) : weather(now)
  {
  }
  void logSecurityEvent(time_t when, int facility, int severity, int eventType, int eventClass, bool failed,
                        std::string record, std::string user, std::string origin) override;
  std::size_t records = 0;

private:
  const Weather& weather;
};

/// Holds a group's values until they are judged; accepted ones are live from then on.
class Validator : public ValidatorIfc
{
public:
  Validator(Violations& found, std::map<std::string, std::string>& liveValues) : violations(found), live(liveValues)
  {
  }
  void stage(const std::string& rootId, const std::string& value);

  std::vector<std::pair<std::string, std::string>> getValidGroupItems(const std::string& group) override;
  void clearGroup(const std::string& group) override;
  bool validateGroup(std::string& reason, const std::string& group) override;
  void reloadGroup(const std::string& group) override;

private:
  Violations& violations;
  std::map<std::string, std::string>& live;
  std::map<std::string, std::string> staged;
};

class Agent : public MgmtAgentIfc
{
public:
  void observedDataChanged(ManageableData&) override
  {
  }
};

class World : public SvcRTEContext
{
public:
  World();
  ~World() override;

  Executable* findService(const std::string& interfaceName) override;

  /// Hands all callbacks to the manager; may be called again once it has forgotten them.
  void registerCallbacks();

  Violations violations;
  Weather weather;
  /// What the service works with, by root id.
  std::map<std::string, std::string> live;
  Das das{violations, weather, live};
  Interfaces interfaces;
  Store store{violations, weather, live};
  SecurityLog securityLog{weather};
  Validator validator{violations, live};
  Agent agent;
  std::size_t renewals = 0;
  std::unique_ptr<ServiceDataManagerIfc> manager;
};

} // namespace threads
