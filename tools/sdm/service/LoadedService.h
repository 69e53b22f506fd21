// Loads a service from its shared object.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "loadable/Service.h"

namespace cli
{

/// Where the sample service lies, seen from the program's folder: in a build as when it is installed. It need not be
/// there.
std::filesystem::path sampleService();

/// Loads a service and owns it. The shared object stays in the process until its end.
class LoadedService
{
public:
  /// Throws `StartError`, which names the file and the reason, for a file that is not there, is no shared object or one
  /// for another machine, that needs what nobody has, has no entry point or one of another version, and for a service
  /// that cannot be made.
  explicit LoadedService(const std::filesystem::path& sharedObject);

  /// Absolute.
  const std::filesystem::path& file() const;

  loadable::Service& service();

  /// Destroys the service and makes it again, as after a power-up. Throws `StartError`; there is no service then.
  void makeAnew();

  /// By this name the local store knows the service.
  const std::string& name() const;

  /// The map that the service brings. Throws `StartError` when it brings none, or none is where it says.
  std::filesystem::path itemMap() const;

  /// What it wants in the database beside the items of its map. Throws `StartError` when it fails to tell.
  std::vector<host::SchemaDefinition> provisioning() const;

private:
  std::filesystem::path path;
  std::unique_ptr<loadable::Service> made;
  std::string itsName;
};

} // namespace cli
