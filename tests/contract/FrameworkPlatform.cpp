// A device's framework under the tests of the contract. Where its encryption needs anything before it is used, this is
// the place.
#include "PlatformUnderTest.h"

void contract::prepareEncryption()
{
}
