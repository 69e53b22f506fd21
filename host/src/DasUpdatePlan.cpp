// Cells are sorted into rows in the order of the request; a table of places is made only for a row of several columns.
#include "DasUpdatePlan.h"

#include <limits>
#include <utility>

#include "Refusal.h"

namespace host
{
namespace
{
constexpr std::size_t nowhere = std::numeric_limits<std::size_t>::max();
} // namespace

DasUpdatePlan::DasUpdatePlan(const DasTable& itsTable) : table(itsTable)
{
}

void DasUpdatePlan::beginOnlyRow()
{
  rows.emplace_back();
}

void DasUpdatePlan::beginRow(std::string index)
{
  if (!rows.empty() && rows.back().values.front() == index)
    return;
  if (!places.empty())
    for (const DasColumn* column : rows.back().columns)
      placeOf(*column) = nowhere;
  rows.emplace_back().values.push_back(std::move(index));
}

void DasUpdatePlan::set(DasCell& cell)
{
  const DasColumn* column = table.find(cell.column);
  if (column == nullptr)
    throw Refusal("schema '" + table.schema + "' has no column '" + cell.column + "'");
  RowChange& row = rows.back();
  if (places.empty() && !row.columns.empty())
  {
    places.assign(table.columns.size(), nowhere);
    placeOf(*row.columns.front()) = row.values.size() - 1;
  }
  if (!places.empty())
  {
    if (const std::size_t place = placeOf(*column); place != nowhere)
    {
      row.values[place] = std::move(cell.value);
      return;
    }
    placeOf(*column) = row.values.size();
  }
  row.columns.push_back(column);
  row.values.push_back(std::move(cell.value));
}

std::size_t& DasUpdatePlan::placeOf(const DasColumn& column)
{
  return places[static_cast<std::size_t>(&column - table.columns.data())];
}
} // namespace host
