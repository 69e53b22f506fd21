// Names and what is offered under them, under one lock.
#include "host/RuntimeContext.h"

namespace host
{
void RuntimeContext::offer(const std::string& interfaceName, Executable* service)
{
  const std::lock_guard<std::mutex> lock(mutex);
  if (service == nullptr)
    services.erase(interfaceName);
  else
    services[interfaceName] = service;
}

void RuntimeContext::withdraw(const std::string& interfaceName)
{
  offer(interfaceName, nullptr);
}

Executable* RuntimeContext::findService(const std::string& interfaceName)
{
  const std::lock_guard<std::mutex> lock(mutex);
  const auto found = services.find(interfaceName);
  return found == services.end() ? nullptr : found->second;
}
} // namespace host
