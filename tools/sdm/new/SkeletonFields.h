// The settings behind the callbacks of a map: which there are, of which type, and what they are called.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "map/ItemTable.h"

namespace cli::skeleton
{

enum class FieldType
{
  boolean,
  integer,
  text,
  secret
};

/// A setting: what a setter writes and a getter reads. Items whose callbacks have a name in common are one setting.
struct SkeletonField
{
  std::string name;
  FieldType type = FieldType::text;
  /// Of its first item.
  std::string schema;
  std::vector<std::string> setters;
  std::vector<std::string> getters;
  /// The defaults by row, in the order of the map; one of the row "" for a setting without rows.
  std::vector<std::pair<std::string, std::string>> rows;
  bool hasRows = false;
  /// Some item of it is kept in the local management store.
  bool local = false;
  /// The last item of each root id.
  std::vector<const MapItem*> items;
};

/// In the order of the map. Items without callbacks have none. Borrows the table's items.
std::vector<SkeletonField> skeletonFields(const ItemTable& table);

/// "int", "Rows<bool>" and so on.
std::string typeOf(const SkeletonField& field);

/// A value as it stands in the code.
std::string valueLiteral(FieldType type, const std::string& value);

/// The group and root id of the items that a setter is the setter of, by their rows. Empty when none is in a group.
std::map<std::string, const MapItem*> membersOf(const SkeletonField& field, const std::string& setter);

} // namespace cli::skeleton
