// Types are guessed from the defaults, names are made from the setters.
#include "SkeletonFields.h"

#include <algorithm>
#include <charconv>
#include <set>

#include "Identifiers.h"
#include "host/Secrets.h"

namespace cli::skeleton
{
namespace
{

bool isBoolean(const std::string& value)
{
  return value == "true" || value == "false";
}

/// Whether a whole number of this value has this text and no other.
bool isInteger(const std::string& value)
{
  int number = 0;
  const char* end = value.data() + value.size();
  const auto result = std::from_chars(value.data(), end, number);
  return result.ec == std::errc() && result.ptr == end && std::to_string(number) == value;
}

/// All that the map would give the setting. What nobody gave stands in the local store as an empty text, which is none.
std::vector<std::string> valuesOf(const SkeletonField& field)
{
  std::vector<std::string> values;
  for (const MapItem* item : field.items)
  {
    values.push_back(item->defaultValue);
    if (item->hasAlternative())
      values.push_back(item->alternativeDefault);
  }
  return values;
}

FieldType guess(const SkeletonField& field)
{
  const auto isSecret = [](const MapItem* item) { return item->encrypted || host::isSecret(item->rootId); };
  if (std::any_of(field.items.begin(), field.items.end(), isSecret))
    return FieldType::secret;
  const bool grouped =
      std::any_of(field.items.begin(), field.items.end(), [](auto* item) { return !item->group.empty(); });
  const std::vector<std::string> values = valuesOf(field);
  // A member of a group takes the empty text of the local store as it is.
  if (field.local && grouped)
    return FieldType::text;
  if (std::all_of(values.begin(), values.end(), isBoolean))
    return FieldType::boolean;
  return std::all_of(values.begin(), values.end(), isInteger) ? FieldType::integer : FieldType::text;
}

void addOnce(std::vector<std::string>& names, const std::string& name)
{
  if (!name.empty() && std::find(names.begin(), names.end(), name) == names.end())
    names.push_back(name);
}

bool contains(const std::vector<std::string>& names, const std::string& name)
{
  return std::find(names.begin(), names.end(), name) != names.end();
}

void addItem(SkeletonField& field, const MapItem& item)
{
  addOnce(field.setters, item.setter);
  addOnce(field.getters, item.getter);
  field.items.push_back(&item);
}

/// The setting that an item belongs to; settings that it joins become one.
void join(std::vector<SkeletonField>& fields, const MapItem& item)
{
  SkeletonField* joined = nullptr;
  for (auto field = fields.begin(); field != fields.end();)
  {
    if (!contains(field->setters, item.setter) && !contains(field->getters, item.getter))
    {
      ++field;
      continue;
    }
    if (joined == nullptr)
    {
      joined = &*field++;
      continue;
    }
    for (const MapItem* other : field->items)
      addItem(*joined, *other);
    field = fields.erase(field);
  }
  addItem(joined != nullptr ? *joined : fields.emplace_back(), item);
}

void complete(SkeletonField& field, UniqueNames& names)
{
  field.name = names.claim(fieldName(field.setters.empty() ? field.getters.front() : field.setters.front()));
  field.schema = field.items.front()->schema;
  for (const MapItem* item : field.items)
  {
    field.local = field.local || item->isLocal();
    field.hasRows = field.hasRows || !item->indexValue.empty();
    auto row = std::find_if(field.rows.begin(), field.rows.end(),
                            [&](const auto& each) { return each.first == item->indexValue; });
    if (row == field.rows.end())
      field.rows.emplace_back(item->indexValue, item->defaultValue);
    else
      row->second = item->defaultValue;
  }
  field.type = guess(field);
}

} // namespace

std::vector<SkeletonField> skeletonFields(const ItemTable& table)
{
  std::vector<SkeletonField> fields;
  for (const std::string& rootId : table.rootIds())
  {
    const MapItem& item = *table.find(rootId);
    if (!item.setter.empty() || !item.getter.empty())
      join(fields, item);
  }
  UniqueNames names;
  for (SkeletonField& field : fields)
    complete(field, names);
  return fields;
}

std::string typeOf(const SkeletonField& field)
{
  static const std::map<FieldType, std::string> types = {{FieldType::boolean, "bool"},
                                                         {FieldType::integer, "int"},
                                                         {FieldType::text, "std::string"},
                                                         {FieldType::secret, "Secret"}};
  const std::string& type = types.at(field.type);
  return field.hasRows ? "Rows<" + type + ">" : type;
}

std::string valueLiteral(FieldType type, const std::string& value)
{
  if (type == FieldType::boolean)
    return value;
  // The smallest number is no literal: it is a minus before one that is too large.
  if (type == FieldType::integer)
    return value == "-2147483648" ? "-2147483647 - 1" : value;
  return type == FieldType::text ? literal(value) : "{" + literal(value) + "}";
}

std::map<std::string, const MapItem*> membersOf(const SkeletonField& field, const std::string& setter)
{
  std::map<std::string, const MapItem*> members;
  for (const MapItem* item : field.items)
  {
    if (item->setter == setter && !item->group.empty())
      members[item->indexValue] = item;
  }
  return members;
}

} // namespace cli::skeleton
