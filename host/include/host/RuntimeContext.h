// The directory of the host's services.
#pragma once

#include <SvcRTEContext.h>

#include <map>
#include <mutex>
#include <string>

#include "host/HostExport.h"

namespace host
{
/// Finds what was offered. Every operation may be called from any thread and blocks only for another one of them.
class SDM_HOST_EXPORT RuntimeContext : public ::SvcRTEContext
{
public:
  /// From now on `service` (borrowed) is found under `interfaceName`, in place of an earlier one. Null takes the name
  /// away, as `withdraw` does.
  void offer(const std::string& interfaceName, Executable* service);

  /// From now on nothing is found under `interfaceName`. A name that is not offered is no error.
  void withdraw(const std::string& interfaceName);

  Executable* findService(const std::string& interfaceName) override;

private:
  std::mutex mutex;
  std::map<std::string, Executable*> services;
};
} // namespace host
