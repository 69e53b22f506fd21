// Which service a device folder belongs to: two services on one folder would each find the other's map and values.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "service/LoadedService.h"

namespace cli
{

/// The file service.json of a device folder.
class DeviceOwner
{
public:
  /// Reads it. Throws `StartError` when the folder belongs to a service of another name than `service`, unless that
  /// `takesOver`. A folder without the file belongs to nobody.
  DeviceOwner(const std::filesystem::path& deviceFolder, const LoadedService& service, bool takesOver);

  /// From now on the folder is the service's, which was started with `map`. Returns why that could not be written, as a
  /// sentence for the operator; empty when it was, or stood there.
  std::string remember(const LoadedService& service, const std::filesystem::path& map) const;

  /// Why what stands there cannot be read, as a sentence for the operator; empty when it can or there is none.
  const std::string& trouble() const;

private:
  void read();

  const std::filesystem::path file;
  /// All of it empty as long as it is nobody's.
  std::string content;
  std::string owner;
  std::string ownersFile;
  std::string unreadable;
};

} // namespace cli
