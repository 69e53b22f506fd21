// The trial of a service, in the process that loads it.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "GroupTrial.h"
#include "ItemTrial.h"
#include "LoadedService.h"
#include "RunningService.h"
#include "TrialReport.h"
#include "host/Device.h"
#include "map/ItemTable.h"
#include "map/Masking.h"

namespace cli
{

class ServiceTrial
{
public:
  /// Loads the service and brings it up on a device in `scratch`, an empty folder that becomes the working folder.
  /// Borrows the report. Throws `StartError`.
  ServiceTrial(const std::filesystem::path& service, const std::filesystem::path& map,
               const std::filesystem::path& scratch, const TrialReport& itsReport);

  void run();

private:
  void provision();
  void resolve();
  void tryDefaults(DefaultKind kind);
  std::vector<std::pair<std::string, GroupTrial::Members>> groups() const;

  const TrialReport& report;
  LoadedService loaded;
  ItemTable table;
  Masking masks;
  std::unique_ptr<host::Device> device;
  std::unique_ptr<RunningService> running;
};

} // namespace cli
