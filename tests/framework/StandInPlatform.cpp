// The stand-in framework under the tests of the contract: it has one device, which lives as long as the process.
#include <PlatformUnderTest.h>
#include <standin/Runtime.h>

namespace
{
class StandInPlatform : public contract::Platform
{
public:
  SvcRTEContext& context() override
  {
    return standin::context();
  }
  std::uint32_t interfaceCount() override
  {
    return 2;
  }
  std::vector<std::string> securityRecords() override
  {
    return standin::securityRecords();
  }
  std::vector<std::string> logLines() override
  {
    return standin::logLines();
  }
};
} // namespace

void contract::prepareEncryption()
{
}

std::unique_ptr<contract::Platform> contract::makePlatform()
{
  return std::make_unique<StandInPlatform>();
}
