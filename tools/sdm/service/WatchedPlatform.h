// The device's services with a listener in front of them.
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

/// What a manager is to be set up with, so that somebody hears what it asks of the device and what becomes of it. No
/// manager that found a service here may outlive it.
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
