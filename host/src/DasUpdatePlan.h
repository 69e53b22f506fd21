// What an update does to its table, worked out before anything is written.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Connection.h"
#include "DasCatalog.h"
#include "DasRequest.h"

namespace host
{
/// The cells of one row as they stand at the end of the request.
struct RowChange
{
  std::vector<const DasColumn*> columns;
  /// Where the table is indexed, the row's index value stands before those of the columns.
  Connection::Values values;
};

/// A change a row. Entries of one row that follow each other are one: whoever writes requests makes an entry of each
/// cell.
class DasUpdatePlan
{
public:
  /// The table lives longer, and gets no column meanwhile.
  explicit DasUpdatePlan(const DasTable& table);

  /// Of a table without index.
  void beginOnlyRow();

  void beginRow(std::string index);

  /// In the row begun last; of a column set twice the later value stays. Takes the value. Throws `Refusal` when there
  /// is no such column.
  void set(DasCell& cell);

  /// In the order of the request.
  std::vector<RowChange> rows;

private:
  std::size_t& placeOf(const DasColumn& column);

  const DasTable& table;
  /// Where the value of each of the table's columns stands in the row begun last. Empty until a row gets a second
  /// column, which most do not.
  std::vector<std::size_t> places;
};
} // namespace host
