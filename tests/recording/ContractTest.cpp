// The recording platform under the tests of the contract.
#include "PlatformUnderTest.h"

void contract::prepareEncryption()
{
}
