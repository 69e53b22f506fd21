// The contract's encryption: the host's own, unless it is to fail on demand.
#include <DasCrypt.h>

#include "Encryption.h"
#include "FaultLayer.h"
#include "Log.h"

namespace
{
bool isToFail()
{
  if (!host::metFault(host::FaultPlace::encryption))
    return false;
  SDM_HOST_TRACE(host::metFaultLevel, "fault on demand: encryption fails");
  return true;
}
} // namespace

bool DasCrypt::toEncryptedText(const std::string& in, std::string& out)
{
  return isToFail() ? host::couldNotEncrypt(out, "encryption fails on demand") : host::encryptText(in, out);
}

bool DasCrypt::fromEncryptedText(const std::string& in, std::string& out)
{
  return isToFail() ? host::couldNotDecrypt(in) : host::decryptText(in, out);
}
