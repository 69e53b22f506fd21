// Wraps the services of a device. Tells a listener of every call.
#pragma once

#include <LocalMgmtIfc.h>
#include <SecurityLogServiceIfc.h>
#include <SvcRTEContext.h>

#include <memory>
#include <string>

#include "CallListener.h"
#include "host/Device.h"

namespace cli
{

/// Give this to `setup` of a manager to hear its calls of the platform. It has to outlive the manager.
class WatchedPlatform : public SvcRTEContext, private host::TrafficListener
{
public:
  /// Borrows both.
  WatchedPlatform(host::Device& itsDevice, CallListener& itsListener);
  ~WatchedPlatform() override;
  WatchedPlatform(const WatchedPlatform&) = delete;
  WatchedPlatform& operator=(const WatchedPlatform&) = delete;

  Executable* findService(const std::string& interfaceName) override;

private:
  void requestBegins(const std::string& request) override;
  void exchangeEnded(const host::Exchange& exchange) override;

  host::Device& device;
  CallListener& listener;
  std::unique_ptr<LocalMgmtIfc> store;
  std::unique_ptr<SecurityLogServiceIfc> securityLog;
};

} // namespace cli
