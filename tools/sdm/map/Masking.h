// Masks secrets.
#pragma once

#include <set>
#include <string>

#include "ItemTable.h"

namespace cli
{

/// Knows which items are secrets, and by which columns they go into requests.
class Masking
{
public:
  /// Tells the platform about the map's encrypted items, so that log lines mask them as well.
  explicit Masking(const ItemTable& items);

  bool isSecret(const MapItem& item) const;

  /// Also for a root id that is not in the map.
  bool isSecret(const std::string& rootId) const;

  /// Whether the texts of elements of this name are secrets.
  bool isSecretElement(const std::string& name) const;

  /// A value as it may be printed: a mask of one length for all values of a secret, the empty one included.
  std::string value(const MapItem& item, const std::string& text) const;

  static constexpr const char* mask = "*****";

private:
  std::set<std::string> columns;
};

} // namespace cli
