// A device's framework under the tests of the contract, as far as that goes without knowing it. A source of its own,
// named by SDM_CONTRACT_PLATFORM, says what its encryption needs before it is used and how a test gets at its services.
#include "PlatformUnderTest.h"

void contract::prepareEncryption()
{
}

std::unique_ptr<contract::Platform> contract::makePlatform()
{
  return nullptr;
}
