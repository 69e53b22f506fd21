// Text helpers whose rules belong to the device.
#pragma once

#include <string>

#include "PlatformExport.h"

/// Both operations may be called from any thread and keep no reference to their arguments.
class SDM_PLATFORM_EXPORT ClientUtils
{
public:
  /// A copy of `text` that can stand as the content of an XML element and is read back unchanged by an XML
  /// parser, as far as XML can carry its characters.
  static std::string escapeXMLString(const std::string& text);

  /// What a log line may show of an item's value: the value itself, or a mask when the platform deems the
  /// item a secret.
  static std::string hidePassword(const std::string& rootId, const std::string& value);
};
