// Each setting becomes a field and its callbacks; each group a function that judges it.
#include "SkeletonCode.h"

#include <set>

#include "CodeLines.h"
#include "Identifiers.h"

namespace cli::skeleton
{
namespace
{

using Fields = std::vector<SkeletonField>;

std::string line(const std::string& code)
{
  return code + "\n";
}

std::string comment(const std::string& schema)
{
  // In quotes nothing can reach behind the end of the line.
  const std::string name = schema.empty() ? "Kept on the device only." : schema;
  return typeName(name) == name || schema.empty() ? name : literal(schema);
}

std::string initialiser(const SkeletonField& field)
{
  if (!field.hasRows)
  {
    const std::string& value = field.rows.front().second;
    return value.empty() ? "" : " = " + valueLiteral(field.type, value);
  }
  std::string rows;
  for (const auto& [row, value] : field.rows)
    rows += (rows.empty() ? "{" : ", {") + literal(row) + ", " + valueLiteral(field.type, value) + "}";
  return " = {" + rows + "}";
}

std::string setterCall(const SkeletonField& field, const std::string& setter)
{
  const std::string common = literal(setter) + ", &Settings::" + field.name;
  const auto members = membersOf(field, setter);
  if (members.empty())
    return line(std::string("  add.") + (field.local ? "local(" : "setter(") + common + ");");
  std::string list;
  for (const auto& [row, item] : members)
    list += (list.empty() ? "{" : ", {") + literal(row) + ", {" + literal(item->group) + ", " + literal(item->rootId) +
            "}}";
  return line("  add.member(" + common + ", {" + list + "});");
}

std::string callbacks(const SkeletonField& field)
{
  std::string text;
  for (const std::string& setter : field.setters)
    text += setterCall(field, setter);
  for (const std::string& getter : field.getters)
    text += line("  add.getter(" + literal(getter) + ", &Settings::" + field.name + ");");
  return text;
}

/// The settings in each group, for a comment.
std::map<std::string, std::string> groupMembers(const ItemTable& table, const Fields& fields)
{
  std::map<std::string, std::string> members;
  for (const SkeletonField& field : fields)
  {
    std::set<std::string> groups;
    for (const MapItem* item : field.items)
    {
      if (!item->group.empty() && groups.insert(item->group).second)
        members[item->group] += (members[item->group].empty() ? "" : ", ") + field.name;
    }
  }
  for (const std::string& rootId : table.rootIds())
    members.emplace(table.find(rootId)->group, "");
  members.erase("");
  return members;
}

} // namespace

std::string settingFields(const Fields& fields)
{
  std::string text;
  const SkeletonField* before = nullptr;
  for (const SkeletonField& field : fields)
  {
    if (before == nullptr || before->schema != field.schema)
      text += (before == nullptr ? "" : "\n") + line("  // " + comment(field.schema));
    text += line("  " + typeOf(field) + " " + field.name + initialiser(field) + ";");
    before = &field;
  }
  return text;
}

std::pair<std::string, std::string> registration(const Fields& fields)
{
  UniqueNames names;
  std::map<std::string, std::string> bodies;
  std::vector<std::string> order;
  for (const SkeletonField& field : fields)
  {
    if (bodies.count(field.schema) == 0)
      order.push_back(field.schema);
    bodies[field.schema] += callbacks(field);
  }
  std::string functions;
  std::string calls;
  for (const std::string& schema : order)
  {
    const std::string name = names.claim("add" + (schema.empty() ? "DeviceItems" : typeName(schema)));
    functions += line("void " + name + "(Registration& add)") + "{\n" + bodies[schema] + "}\n\n";
    calls += (calls.empty() ? "" : "\n") + std::string("  ") + name + "(add);";
  }
  return {functions.empty() ? "\n" : functions, calls.empty() ? "  static_cast<void>(add);" : calls};
}

std::string groupRules(const ItemTable& table, const Fields& fields)
{
  UniqueNames names;
  std::string functions;
  std::string choices;
  for (const auto& [group, members] : groupMembers(table, fields))
  {
    const std::string name = names.claim("judge" + typeName(group));
    functions += line("// " + (members.empty() ? "No setting of this group has a setter" : members) + ".") +
                 line("std::string " + name + "(const Settings&)") + "{\n  return \"\";\n}\n\n";
    choices += line("  if (group == " + literal(group) + ")") + line("    return " + name + "(proposed);");
  }
  if (choices.empty())
    return "\n// The item map has no groups.\nstd::string judgeGroup(const std::string&, const Settings&)\n{\n"
           "  return \"\";\n}\n";
  return "namespace\n{\n\n// A text other than \"\" refuses the group, and says why.\n\n" + functions +
         "} // namespace\n\nstd::string judgeGroup(const std::string& group, const Settings& proposed)\n{\n" + choices +
         "  return \"\";\n}\n";
}

} // namespace cli::skeleton
