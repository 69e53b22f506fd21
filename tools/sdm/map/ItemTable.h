// The items of a map file, as the operator sees them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "base/StartError.h"

namespace cli
{

/// The two defaults that an item may have.
enum class DefaultKind
{
  usual,
  alternative
};

/// One line of the map.
struct MapItem
{
  std::string rootId;
  std::string schema;
  std::string column;
  std::string indexName;
  std::string indexValue;
  std::string defaultValue;
  std::string alternativeDefault;
  std::string setter;
  std::string getter;
  std::string group;
  bool userData = false;
  bool encrypted = false;

  /// Kept in the local management store only.
  bool isLocal() const
  {
    return schema.empty();
  }

  bool hasAlternative() const
  {
    return !alternativeDefault.empty();
  }

  /// The default of this kind; the usual one where the item has no alternative default.
  const std::string& defaultOf(DefaultKind kind) const
  {
    return kind == DefaultKind::alternative && hasAlternative() ? alternativeDefault : defaultValue;
  }
};

/// Lines whose last column was meant to say something about encryption, and does not.
struct UnclearEncryption
{
  std::size_t lines = 0;
  unsigned long firstLine = 0;
  /// Whether the first one ends in a carriage return.
  bool carriageReturn = false;
};

/// The bytes of a map file. Throws `StartError` for one that cannot be read, is no regular file or has more than 64
/// MiB.
std::string mapContent(const std::filesystem::path& path);

class ItemTable
{
public:
  /// Throws `StartError` for a file that cannot be read, holds no item or has more than 64 MiB.
  explicit ItemTable(const std::filesystem::path& path);

  const std::vector<MapItem>& items() const;

  /// Null when there is none. Of several items with one root id the last, as the manager does it.
  const MapItem* find(const std::string& rootId) const;

  /// Each once, in the order of the file.
  const std::vector<std::string>& rootIds() const;

  /// Lines whose last column is neither empty nor "true". The manager takes their items for unencrypted.
  const UnclearEncryption& unclearEncryption() const;

private:
  void noteEncryption(const std::string& column, unsigned long line);

  std::vector<MapItem> all;
  UnclearEncryption unclear;
  std::map<std::string, std::size_t> places;
  std::vector<std::string> ids;
};

/// Whether a unit with so many interfaces takes the alternative default of an item that has one.
bool takesAlternative(const MapItem& item, std::uint32_t interfaces);

} // namespace cli
