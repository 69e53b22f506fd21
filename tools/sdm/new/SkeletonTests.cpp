// Chooses the settings and items that are fit for a test, and writes what the templates of the tests need of them.
#include "SkeletonTests.h"

#include <algorithm>
#include <cctype>
#include <set>

#include "Identifiers.h"

namespace cli::skeleton
{
namespace
{

/// The call of a field's first setter with a value that has not its type.
std::string refusedCall(const SkeletonField& field)
{
  return "registry.setter(" + literal(field.setters.front()) + ")->setValue(\"neither\", " +
         literal(field.rows.front().first) + ", error)";
}

bool isTyped(const SkeletonField& field)
{
  return !field.setters.empty() && (field.type == FieldType::boolean || field.type == FieldType::integer);
}

/// Whether a request can carry the name, and a table have a column of it.
bool isPlain(const std::string& name)
{
  const auto isLetter = [](char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; };
  const auto isFit = [&](char c) { return isLetter(c) || std::isdigit(static_cast<unsigned char>(c)) != 0; };
  return !name.empty() && isLetter(name[0]) && std::all_of(name.begin(), name.end(), isFit);
}

/// Whether a schema can be made from its items: plain names, one index column, no place twice.
bool isPlainSchema(const ItemTable& table, const std::string& schema)
{
  std::set<std::string> indexNames;
  std::set<std::pair<std::string, std::string>> places;
  for (const MapItem& item : table.items())
  {
    if (item.schema != schema)
      continue;
    indexNames.insert(item.indexName);
    const bool hasRow = !item.indexName.empty();
    if (!isPlain(item.column) || item.column == item.indexName || item.column == schema ||
        hasRow != !item.indexValue.empty() || (hasRow && !(isPlain(item.indexName))) ||
        !places.emplace(item.column, item.indexValue).second)
      return false;
  }
  return isPlain(schema) && indexNames.size() == 1;
}

bool isFitForALife(const ItemTable& table, const SkeletonField& field)
{
  const MapItem& item = *field.items.front();
  return field.type != FieldType::secret && !item.isLocal() && !item.setter.empty() && !item.getter.empty() &&
         item.group.empty() && field.items.size() == field.rows.size() && !field.local &&
         isPlainSchema(table, item.schema);
}

std::string otherValue(const SkeletonField& field)
{
  const std::string& value = field.items.front()->defaultValue;
  if (field.type == FieldType::boolean)
    return value == "true" ? "false" : "true";
  if (field.type == FieldType::integer)
    return value == "1" ? "2" : "1";
  return value == "another" ? "yet another" : "another";
}

} // namespace

std::string typeTests(const std::vector<SkeletonField>& fields)
{
  std::string tests;
  for (const auto& [type, name, reason] :
       {std::tuple(FieldType::integer, "RefuseATextForANumber", "must be a whole number"),
        std::tuple(FieldType::boolean, "RefuseWhatIsNeitherTrueNorFalse", "must be true or false")})
  {
    const auto field =
        std::find_if(fields.begin(), fields.end(),
                     [wanted = type](const SkeletonField& each) { return each.type == wanted && isTyped(each); });
    if (field == fields.end())
      continue;
    tests += std::string("\nTEST_F(CallbacksTest, ") + name + ")\n{\n  std::string error;\n  EXPECT_FALSE(" +
             refusedCall(*field) + ");\n  EXPECT_EQ(error, \"" + reason + "\");\n}\n";
  }
  return tests;
}

std::string groupTests(const std::vector<SkeletonField>& fields)
{
  const auto field = std::find_if(fields.begin(), fields.end(),
                                  [](const SkeletonField& each) {
                                    return isTyped(each) && each.items.front()->setter == each.setters.front() &&
                                           !each.items.front()->group.empty();
                                  });
  if (field == fields.end())
    return "";
  const std::string group = literal(field->items.front()->group);
  return "\nTEST_F(GroupsTest, ChangeNothingWhenAValueHasAnotherType)\n{\n  std::string error;\n"
         "  setMembers(" +
         group + ", &MapLine::defaultValue);\n  EXPECT_FALSE(" + refusedCall(*field) +
         ");\n  EXPECT_FALSE(groups.validateGroup(error, " + group + "));\n}\n";
}

std::map<std::string, std::string> lifeOf(const ItemTable& table, const std::vector<SkeletonField>& fields)
{
  const auto field =
      std::find_if(fields.begin(), fields.end(), [&](const SkeletonField& each) { return isFitForALife(table, each); });
  if (field == fields.end())
    return {};
  const MapItem& item = *field->items.front();
  return {{"schemaText", literal(item.schema)},
          {"rootIdText", literal(item.rootId)},
          {"defaultText", literal(item.defaultValue)},
          {"otherText", literal(otherValue(*field))}};
}

} // namespace cli::skeleton
