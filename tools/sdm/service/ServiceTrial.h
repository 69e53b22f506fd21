// The trial of a service, in the process that loads it.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "LoadedService.h"
#include "RunningService.h"
#include "ServiceCheck.h"
#include "host/Device.h"
#include "map/ItemTable.h"
#include "map/Masking.h"

namespace cli
{

class ServiceTrial
{
public:
  /// Who hears what was found, and what is about to be tried.
  struct Listener
  {
    std::function<void(const ServiceFinding&)> found;
    std::function<void(const std::string& step)> step;
  };

  /// Loads the service and brings it up on a device in `scratch`, an empty folder that becomes the working folder.
  /// Throws `StartError`.
  ServiceTrial(const std::filesystem::path& service, const std::filesystem::path& map,
               const std::filesystem::path& scratch, const Listener& itsListener);

  void run();

private:
  enum class Kind
  {
    byDefault,
    alternative
  };

  using Members = std::vector<const MapItem*>;

  void resolve();
  void tryAlone(const MapItem& item, Kind kind);
  void tryGroup(const std::string& group, const Members& members, Kind kind);
  bool set(const MapItem& item, Kind kind);
  void compare(const MapItem& item, Kind kind);
  bool judge(const std::string& group, const MapItem& first, Kind kind);
  void compareValidItems(const std::string& group, const Members& members);
  std::vector<std::pair<std::string, Members>> groups() const;
  std::string quoted(const MapItem& item, const std::string& value) const;
  void find(const std::string& rootId, const std::string& rule, const std::string& text);

  /// Calls the service. False when it throws, which is a finding then.
  bool guarded(const std::string& rootId, const std::string& what, const std::string& rule,
               const std::function<void()>& call);

  Listener listener;
  LoadedService loaded;
  ItemTable table;
  Masking masks;
  std::unique_ptr<host::Device> device;
  std::unique_ptr<RunningService> running;
};

} // namespace cli
