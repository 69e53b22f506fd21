// What a platform gives to the tests of the contract so that they can run on it.
#pragma once

#include <SvcRTEContext.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace contract
{
/// Makes `DasCrypt` ready for use, however often it is called. Nothing to do where it always is.
void prepareEncryption();

/// A device of the platform, as far as every platform lets a test see it.
class Platform
{
public:
  virtual ~Platform() = default;

  /// Knows the four services by the names of their interfaces.
  virtual SvcRTEContext& context() = 0;

  /// What `PhysicalInterfaceServiceIfc` has to answer.
  virtual std::uint32_t interfaceCount() = 0;

  /// The security log, a text a record, in the order of the events. How a record is written is the platform's affair,
  /// but letters and digits stand in it as they were handed over.
  virtual std::vector<std::string> securityRecords() = 0;

  /// What was handed to `logAppUni` since the device was made, a text a call, in order. The text holds what the caller
  /// formatted.
  virtual std::vector<std::string> logLines() = 0;
};

/// Null where nobody has told how a test gets at the services; their tests are then skipped.
std::unique_ptr<Platform> makePlatform();
} // namespace contract
