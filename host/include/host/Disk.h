// What databases write to, as something that can refuse.
#pragma once

#include <filesystem>

#include "host/HostExport.h"

namespace host
{
/// Asked before each change of a file. Its operation is called with the lock of whoever changes the file held, and may
/// be called from any thread.
class SDM_HOST_EXPORT Disk
{
public:
  virtual ~Disk() = default;

  /// Throws `Error` naming the file when the change is not to be tried.
  virtual void beforeChange(const std::filesystem::path& file) = 0;
};
} // namespace host
