// How `DasCrypt` encrypts when it is not told to fail.
#pragma once

#include <string>

namespace host
{
/// As the operations of `DasCrypt` promise; false when there is no key, among other reasons. May be called from any
/// thread.
bool encryptText(const std::string& in, std::string& out);
bool decryptText(const std::string& in, std::string& out); ///< as above

/// Leaves in `out` what an update is refused for, with the reason, and logs that. Always false.
bool couldNotEncrypt(std::string& out, const std::string& why);

/// Whoever could not open a text goes on with the text itself, and may hand it in again as if it were the value: notes
/// it, when it is an encrypted text, so that it is refused then. Always false.
bool couldNotDecrypt(const std::string& in);
} // namespace host
