// The Data Access Service over a SQLite file: one table per schema, every update whole or not at all.
#pragma once

#include <DataAccessServiceIfc.h>

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/Disk.h"
#include "host/HostExport.h"
#include "host/Storage.h"

namespace host
{
/// What a schema consists of. Names are compared byte by byte, so names that differ only in case are different.
struct SDM_HOST_EXPORT SchemaDefinition
{
  /// As it stands in item maps and requests. Not empty.
  std::string name;
  /// Names the column that tells rows apart; empty for a schema of one row without index.
  std::string indexColumn;
  /// Value columns; a repeated one, or the index column among them, counts once.
  std::vector<std::string> columns;
  /// Rows that exist from the start, without values. Empty when there is no index column.
  std::vector<std::string> indexValues;
};

/// Answers requests from a database file that one process at a time uses. Every operation may be called from any
/// thread; requests are carried out one after the other. An update is on the disk when its reply is returned.
class SDM_HOST_EXPORT DataAccessService : public ::DataAccessServiceIfc
{
public:
  /// Opens the database or makes it; what was provisioned earlier is there again. Throws `Error` naming the file and
  /// the reason, such as a file that is no database or a database of another kind.
  ///
  /// On a disk that takes no changes a copy can do: it answers reads, refuses updates with `whyCopied`, and keeps what
  /// is provisioned to itself. `disk` (borrowed) is asked before each change of the file; null for nobody.
  explicit DataAccessService(const std::filesystem::path& database, Storage storage = Storage::file,
                             const std::string& whyCopied = "", Disk* disk = nullptr);
  ~DataAccessService() override;
  DataAccessService(const DataAccessService&) = delete;
  DataAccessService& operator=(const DataAccessService&) = delete;

  /// Makes schemas, columns and rows that are missing, all or none, and keeps what is there. Throws `Error` for a
  /// definition that cannot be: an empty name, a column named like one of the message's own elements, a text that XML
  /// cannot carry, index values without an index column, another index column than the schema has. Throws `Error` as
  /// well when the database fails; but when its disk takes no changes, the service goes on with a copy.
  void provision(const std::vector<SchemaDefinition>& schemas);

  /// The schemas as they stand, in the order they were made. The index values are those of all rows.
  std::vector<SchemaDefinition> schemas();

  /// Why the service works on a copy, if it came to that after it was opened; empty otherwise.
  std::string diskTrouble();

  /// Answers one request. Whatever is wrong with it, or with the database, becomes a reply of the kind
  /// "error_response" with the reason in an `Error` element, and nothing is changed. The reason never holds a value,
  /// nor, for a read, the name of a column; what the database says of its own failures in a read goes to the log alone.
  /// A cell that was never written does not appear in replies; an empty one does. Rows come in the order in which they
  /// were made. Does not throw but for want of memory.
  std::string sendRequest(const char* request, std::size_t length) override;

  /// A cell as it is stored (an encrypted one stays encrypted); nullopt when it was never written or does not exist.
  /// Both index texts are empty for a schema without index. Throws `Error` when the database fails.
  std::optional<std::string> storedCell(const std::string& schema, const std::string& column,
                                        const std::string& indexColumn, const std::string& indexValue);

private:
  struct Content;
  std::unique_ptr<Content> content;
};
} // namespace host
