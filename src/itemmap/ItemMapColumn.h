// The columns of an item map: their order, their number and their names, for everyone who reads or explains one.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace sdm
{

/// The columns of a line, in file order.
enum class ItemMapColumn : std::size_t
{
  rootId,
  dasSchema,
  dasItem,
  dasIndexName,
  dasIndexValue,
  defaultValue,
  setter,
  getter,
  userData,
  isGroupItem,
  alternativeDefault,
  dasEncrypted,
  count
};

inline constexpr std::size_t itemMapColumnCount = static_cast<std::size_t>(ItemMapColumn::count);

/// What a column is called.
struct ItemMapColumnNames
{
  /// Where a dictionary holds the text, behind "/item[1]/"; null for the column that dictionaries do not have.
  const char* key;
  /// In texts for people, behind "the".
  const char* words;
};

/// The names of all columns, in file order.
inline constexpr std::array<ItemMapColumnNames, itemMapColumnCount> itemMapColumns = {{
    {"rootId", "root id"},
    {"dasSchema", "schema"},
    {"dasItem", "column"},
    {"dasIndexName", "index column"},
    {"dasIndexValue", "index value"},
    {"default", "default"},
    {"setter", "setter"},
    {"getter", "getter"},
    {"userData", "user-data mark"},
    {"isGroupItem", "group"},
    {nullptr, "alternative default"},
    {"dasEncrypted", "encryption flag"},
}};
static_assert(itemMapColumns.back().words != nullptr, "a column lacks its names");

/// The names of one column; `which` is no `count`.
constexpr const char* keyOf(ItemMapColumn which)
{
  return itemMapColumns[static_cast<std::size_t>(which)].key;
}
constexpr const char* wordsOf(ItemMapColumn which)
{
  return itemMapColumns[static_cast<std::size_t>(which)].words;
}

/// Whether a unit with so many interfaces takes the alternative default of an item that has one: units with 2, 3 or 4
/// do. Smaller counts wrap around to huge ones.
constexpr bool takesAlternativeDefaults(std::uint32_t interfaceCount)
{
  return interfaceCount - 2U <= 2U;
}

} // namespace sdm
