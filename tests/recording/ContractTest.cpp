// The recording platform under the tests of the contract.
#include "PlatformUnderTest.h"

#include "Services.h"
#include "Trace.h"

namespace
{
class RecordingPlatform : public contract::Platform
{
public:
  RecordingPlatform()
  {
    recording::reset();
    interfaces.count = 3;
    services.services = {{"DataAccessServiceIfc", &das},
                         {"LocalMgmtIfc", &store},
                         {"PhysicalInterfaceServiceIfc", &interfaces},
                         {"SecurityLogServiceIfc", &securityLog}};
  }
  SvcRTEContext& context() override
  {
    return services;
  }
  std::uint32_t interfaceCount() override
  {
    return interfaces.count;
  }
  std::vector<std::string> securityRecords() override
  {
    return recording::traceOf("logSecurityEvent(");
  }
  std::vector<std::string> logLines() override
  {
    return recording::traceOf("log ");
  }

private:
  recording::Context services;
  recording::Das das;
  recording::Store store;
  recording::Interfaces interfaces;
  recording::SecurityLog securityLog;
};
} // namespace

void contract::prepareEncryption()
{
}

std::unique_ptr<contract::Platform> contract::makePlatform()
{
  return std::make_unique<RecordingPlatform>();
}
