// A SQLite file behind a few calls: statements with bound values, and transactions that are whole or not at all.
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/Storage.h"

namespace host
{
/// One connection, for one thread at a time. Everything throws `Error` of the form "FILE: reason"; the reason holds no
/// bound value. It is `DamagedFile` or `DiskTrouble` where that is the reason.
class Database
{
public:
  using Values = std::vector<std::string>;
  /// A cell is nullopt where the database has NULL.
  using Row = std::vector<std::optional<std::string>>;

  /// Opens the file or makes it. A new one gets `applicationId`, which tells what it is for, and the layout that the
  /// statements make; an existing one must bear that id and be sound. From then on a commit returns when it is on the
  /// disk. With `Storage::copy` the file stays as it is: a copy of it is opened, or when that cannot be an empty
  /// database, and neither takes changes.
  Database(const std::filesystem::path& file, int applicationId, const std::vector<std::string>& layout,
           Storage storage = Storage::file);
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  /// Runs a statement without result; `values` are bound in the order of its parameters.
  void execute(const std::string& sql, const Values& values = {});

  /// Runs a query whose rows have `columns` columns.
  std::vector<Row> select(const std::string& sql, std::size_t columns, const Values& values = {});

  /// Everything executed while it lives, once `commit` returned; nothing of it otherwise.
  class Transaction
  {
  public:
    explicit Transaction(Database& database);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void commit();

  private:
    Database& database;
    bool open = true;
  };

  /// Lets a copy take changes, which go with it, or not; a file always does.
  void allowChangesOfCopy(bool allowed);

private:
  void openFile();
  void openCopy();
  void requireSound();
  std::vector<Row> run(const std::string& sql, std::size_t columns, const Values& values);
  void prepareForDurability();
  bool isInTransaction();
  void layOut(int applicationId, const std::vector<std::string>& layout);

  struct Content;
  std::unique_ptr<Content> content;
};

/// The name as a quoted SQL identifier.
std::string quoted(const std::string& identifier);
} // namespace host
