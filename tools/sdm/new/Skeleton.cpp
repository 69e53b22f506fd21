// Fills the templates with what the map says.
#include "Skeleton.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <vector>

#include "CodeLines.h"
#include "Identifiers.h"
#include "SkeletonCode.h"
#include "SkeletonFields.h"
#include "SkeletonTests.h"
#include "Templates.h"
#include "base/Shown.h"

namespace cli::skeleton
{
namespace
{

using Fields = std::vector<SkeletonField>;

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

std::map<std::string, std::string> filesOf(const std::string& name, const ItemTable& table)
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

} // namespace cli::skeleton
