// One table a schema, with the columns of its items in the order of the map.
#include "Schemas.h"

#include <algorithm>
#include <map>
#include <string>

#include "host/Error.h"

namespace cli
{

std::vector<host::SchemaDefinition> schemasOf(const ItemTable& items)
{
  std::vector<host::SchemaDefinition> schemas;
  std::map<std::string, std::size_t> places;
  for (const MapItem& item : items.items())
  {
    if (item.isLocal())
      continue;
    const auto [place, isNew] = places.emplace(item.schema, schemas.size());
    if (isNew)
      schemas.push_back({item.schema, item.indexName, {}, {}});
    host::SchemaDefinition& schema = schemas[place->second];
    if (schema.indexColumn != item.indexName)
      throw host::Error("schema '" + item.schema + "' has items with different index columns");
    const auto addOnce = [](std::vector<std::string>& list, const std::string& name)
    {
      if (!name.empty() && std::find(list.begin(), list.end(), name) == list.end())
        list.push_back(name);
    };
    addOnce(schema.columns, item.column);
    if (!schema.indexColumn.empty())
      addOnce(schema.indexValues, item.indexValue);
  }
  return schemas;
}

} // namespace cli
