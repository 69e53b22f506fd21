// The whole job by the shortest way there is: one table, one index by root id and one by place. No checks, no locks, no
// log.
#pragma once

#include <array>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include <expat.h>

#include "Callbacks.h"
#include "ItemMapColumn.h"
#include "Platform.h"
#include "Workload.h"

class DataAccessServiceIfc;
class ManageableData;

namespace bench
{

/// An item as the floors need it.
struct PlainItem
{
  std::string rootId, schema, column, row, defaultValue;
  ManagedItemSetter* setter = nullptr;
  ManagedItemGetter* getter = nullptr;
};

using Columns = std::array<const char*, sdm::itemMapColumnCount>;

/// Reads the item map line by line and splits each.
template <typename Take>
void splitLines(Take take)
{
  std::FILE* file = std::fopen("CommsSettings.csv", "r");
  std::array<char, 501> line{};
  while (std::fgets(line.data(), static_cast<int>(line.size()), file) != nullptr)
  {
    Columns columns{};
    char* rest = line.data();
    for (const char*& column : columns)
    {
      column = rest;
      rest = std::strpbrk(rest, ",\n");
      if (rest == nullptr)
        break;
      *rest++ = '\0';
    }
    take(columns);
  }
  std::fclose(file);
}

/// One parse by a parser of its own.
void parse(const std::string& reply, void* userData, XML_StartElementHandler start, XML_EndElementHandler end,
           XML_CharacterDataHandler text);

/// The same with handlers that do nothing.
void parseOnly(const std::string& reply);

std::string readRequest(const std::string& schema);

struct Composite
{
  explicit Composite(const Shape& shape);
  void clear();
  void load();
  void add(const Columns& columns);
  /// Hands every default to its setter.
  void fillCache();
  void start();
  void set(ManageableData& record);
  std::string ask(const std::string& request);

  Workload workload;
  std::unique_ptr<Platform> platform;
  DataAccessServiceIfc* das;
  std::vector<std::unique_ptr<PlainItem>> items;
  std::map<std::string, PlainItem*> byRootId;
  std::unordered_map<std::string, PlainItem*> byPlace;
  const std::unique_ptr<ManagedItemSetter> setter = makeSetter();
  const std::unique_ptr<ManagedItemGetter> getter = makeGetter();
  std::string schema, indexColumn, row, text, reason, error;
  bool taken = false;
};

} // namespace bench
