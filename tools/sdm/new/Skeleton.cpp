#include "Skeleton.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <set>
#include <utility>
#include <vector>

#include "CodeLines.h"
#include "Identifiers.h"
#include "SkeletonFields.h"
#include "SkeletonTests.h"
#include "Templates.h"
#include "base/Shown.h"

namespace cli
{
namespace
{

using Fields = std::vector<SkeletonField>;

std::string line(const std::string& code)
{
  return code + "\n";
}

std::string fill(const std::string& text, const std::map<std::string, std::string>& values)
{
  std::string filled;
  for (std::size_t at = 0; at < text.size();)
  {
    const std::size_t open = text.find('@', at);
    const std::size_t close = open == std::string::npos ? open : text.find('@', open + 1);
    if (close == std::string::npos)
      return filled + text.substr(at);
    filled += text.substr(at, open - at) + values.at(text.substr(open + 1, close - open - 1));
    at = close + 1;
  }
  return filled;
}

/// What is filled in last may be empty, or end in a line end of its own.
std::string oneLineEnd(const std::string& text)
{
  return text.substr(0, text.find_last_not_of('\n') + 1) + "\n";
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

/// The fields of a schema together, schemas in the order of the map.
Fields bySchema(Fields fields)
{
  std::map<std::string, std::size_t> order;
  for (const SkeletonField& field : fields)
    order.emplace(field.schema, order.size());
  std::stable_sort(fields.begin(), fields.end(),
                   [&](const SkeletonField& a, const SkeletonField& b)
                   { return order.at(a.schema) < order.at(b.schema); });
  return fields;
}

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

/// A function a schema, and their calls.
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

/// A function a group, and the one that chooses among them.
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

std::string notes(const ItemTable& table)
{
  std::string without;
  for (const std::string& rootId : table.rootIds())
  {
    const MapItem& item = *table.find(rootId);
    if (item.setter.empty() && item.getter.empty())
      without += "- `" + shown(rootId) + "`\n";
  }
  if (without.empty())
    return "Every item of the map has a callback.";
  return "These items have no callbacks; the library reads them from the database and nobody can set them:\n\n" +
         without.substr(0, without.size() - 1);
}

std::string className(const std::string& name)
{
  const std::string type = typeName(name);
  const std::string ending = "Service";
  const bool ends =
      type.size() >= ending.size() && type.compare(type.size() - ending.size(), ending.size(), ending) == 0;
  return ends ? type : type + ending;
}

} // namespace

bool isServiceName(const std::string& name)
{
  const auto isFit = [](char c)
  {
    return (static_cast<unsigned char>(c) < 0x80 && std::isalnum(static_cast<unsigned char>(c)) != 0) || c == '-' ||
           c == '_';
  };
  return !name.empty() && name.size() <= 64 && std::isalpha(static_cast<unsigned char>(name[0])) != 0 &&
         std::all_of(name.begin(), name.end(), isFit);
}

std::map<std::string, std::string> skeleton(const std::string& name, const ItemTable& table)
{
  const Fields fields = bySchema(skeletonFields(table));
  const auto [functions, calls] = registration(fields);
  std::map<std::string, std::string> values = {{"name", name},
                                               {"Class", className(name)},
                                               {"namespace", namespaceName(name)},
                                               {"version", SDM_VERSION},
                                               {"notes", notes(table)},
                                               {"fields", settingFields(fields)},
                                               {"functions", functions},
                                               {"calls", calls},
                                               {"judges", groupRules(table, fields)},
                                               {"typeTests", typeTests(fields)},
                                               {"groupTests", groupTests(fields)}};
  const auto life = lifeOf(table, fields);
  values.insert(life.begin(), life.end());
  values["testFiles"] = std::string("    tests/CallbacksTest.cpp\n") +
                        (life.empty() ? "" : "    tests/DeviceTest.cpp\n") +
                        "    tests/GroupsTest.cpp\n    tests/RulesTest.cpp";
  std::map<std::string, std::string> files;
  for (const auto& [path, text] : templates())
  {
    if (path == "tests/DeviceTest.cpp" && life.empty())
      continue;
    const bool code = std::filesystem::path(path).parent_path() != "";
    const std::string filled = oneLineEnd(fill(text, values));
    files[path == "clang-format" ? ".clang-format" : path] = code ? foldedCode(filled) : filled;
  }
  files[".gitignore"] = "/build/\n";
  return files;
}

} // namespace cli
