// Encryption of the values that the database keeps encrypted.
#pragma once

#include <string>

#include "PlatformExport.h"

/// Both operations may be called from any thread, may block while the key is read, and may throw.
class SDM_PLATFORM_EXPORT DasCrypt
{
public:
  /// Encrypts `in` (any bytes, the empty text included) into base64 text that stands in an XML element as it is.
  /// Returns whether it succeeded; the manager does not look at the result and sends what `out` holds, so on failure
  /// `out` must not be the plain value. It should be a text that the Data Access Service refuses to store, such as one
  /// with an element in it: an empty text would take the place of the value that is stored.
  static bool toEncryptedText(const std::string& in, std::string& out);

  /// Turns such text back; never asked about an empty one. On false the manager logs and goes on with what `out` holds,
  /// which on entry is the encrypted text itself or nothing. `in` and `out` are different objects.
  static bool fromEncryptedText(const std::string& in, std::string& out);
};
