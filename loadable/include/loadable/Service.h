// A service that a program loads: a shared object with one entry point, `SDM_SERVICE`. It stands above the manager and
// the host platform, which know nothing of it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "host/DataAccessService.h"

class ServiceDataManagerIfc;
class ValidatorIfc;

namespace loadable
{
/// The version of what stands in this header. It is raised with every change that a service has to be built again for.
constexpr std::uint32_t serviceVersion = 1;

/// What a service brings: its callbacks, its validator, and what it wants to find on the device. The manager is not the
/// service's: whoever loads the service makes one, sets it up, starts it and sends it the requests.
///
/// Calls come in this order: the constructor; `name`, `itemMaps`, `provisioning` and `validator`; `registerCallbacks`
/// once; then callbacks and validator, as the manager's interface says. The destructor comes last, when the callbacks
/// are deleted and the manager is gone. All of it runs on the thread that loaded the service, but for callbacks and
/// validator, which run on the thread of whoever called the manager, with the manager's lock held.
///
/// The constructor and every operation may throw. Whoever loads the service then says what failed, with the text of a
/// `std::exception`, and does not start it.
class Service
{
public:
  virtual ~Service() = default;

  /// By this name the local management store knows the service. Not empty.
  virtual std::string name() const = 0;

  /// Where the item map may be when nobody names one: the first of these files that is there. Relative paths start at
  /// the folder of the shared object. Empty when the service has no map of its own.
  virtual std::vector<std::filesystem::path> itemMaps() const
  {
    return {};
  }

  /// Schemas, columns and rows that have to be in the database beside those that the item map names.
  virtual std::vector<host::SchemaDefinition> provisioning() const
  {
    return {};
  }

  /// The judge of the groups, owned by the service and valid as long as it; null for a service without groups. Before
  /// and after each operation of the manager that sets values `clearGroup` is called for every group of the item map,
  /// so nothing that is pending outlives its request.
  virtual ValidatorIfc* validator()
  {
    return nullptr;
  }

  /// Registers setters and getters with `addSetter` and `addGetter`, whose rules for ownership apply: the manager
  /// deletes what it took. The reference is valid until the destructor, and callbacks may keep it.
  virtual void registerCallbacks(ServiceDataManagerIfc& manager) = 0;
};

/// What the entry point answers. `version` stays the first member in all versions.
struct ServiceEntry
{
  /// The `serviceVersion` that the service was built with; others are refused.
  std::uint32_t version;
  /// Makes the service; the caller owns it and deletes it. Null is taken for a failure. It may throw.
  Service* (*make)();
};
} // namespace loadable

/// The entry point: `extern "C" const loadable::ServiceEntry* sdmService()`. It answers the same entry each time, which
/// lives as long as the process, since a shared object that was loaded is never unloaded; it must not throw.
///
/// Stands once in a shared object, outside of namespaces; `Class` is the service's class with its namespace and can be
/// made without arguments.
#define SDM_SERVICE(Class)                                                                                             \
  extern "C" __attribute__((visibility("default"))) const loadable::ServiceEntry* sdmService()                         \
  {                                                                                                                    \
    static const loadable::ServiceEntry entry = {                                                                      \
        loadable::serviceVersion, []() -> loadable::Service* { return std::make_unique<Class>().release(); }};         \
    return &entry;                                                                                                     \
  }
