// What a platform gives to the tests of the contract so that they can run on it.
#pragma once

namespace contract
{
/// Makes `DasCrypt` ready for use, however often it is called. Nothing to do where it always is.
void prepareEncryption();
} // namespace contract
