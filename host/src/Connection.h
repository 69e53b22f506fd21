// A database behind a few calls: statements with bound values, and transactions that are whole or not at all.
//
// What is particular to one kind of database stands in its `Dialect`; whoever works on tables knows this class alone.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Dialect.h"

namespace host
{
/// For one thread at a time. Everything throws `Error` of the form "NAME: reason"; the reason holds no bound value. It
/// is one of the classes in Trouble.h where that is the reason.
class Connection
{
public:
  using Values = std::vector<std::string>;
  /// A cell is nullopt where the database has NULL.
  using Row = std::vector<std::optional<std::string>>;
  using RowReader = std::function<void(const Row&)>;

  virtual ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  const Dialect& dialect() const;

  /// Runs a statement without result; `values` are bound in the order of its parameters. Alone it is a transaction.
  /// Returns how many rows one that inserts, updates or deletes has changed.
  std::size_t execute(const std::string& sql, Values values = {});

  /// The same for one that hardly comes again, such as the making of a table: the prepared statement is not kept.
  void executeOnce(const std::string& sql);

  /// Runs a query whose rows have `columns` columns and hands each to `reader`, which runs no statement itself. What it
  /// throws ends the query and reaches the caller.
  void select(const std::string& sql, std::size_t columns, Values values, const RowReader& reader);

  /// All the rows.
  std::vector<Row> select(const std::string& sql, std::size_t columns, Values values = {});

  /// Everything executed while it lives, once `commit` returned; nothing of it otherwise.
  class Transaction
  {
  public:
    explicit Transaction(Connection& connection);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void commit();

  private:
    Connection& connection;
    bool open = true;
  };

protected:
  /// Not yet open. `name` begins the errors; the dialect lives longer.
  Connection(const std::string& name, const Dialect& dialect);

  /// `text` is the driver's. One that is open must be closed first.
  void open(const std::string& text);
  void close();

private:
  /// Asked before each statement that may change something; throws when it must not be tried.
  virtual void beforeChange()
  {
  }
  /// The number of the system's error behind the statement that failed last; 0 where the database does not tell.
  virtual int systemError()
  {
    return 0;
  }
  template <typename Action>
  void guarded(Action action);
  std::size_t run(const std::string& sql, std::size_t columns, Values& values, const RowReader& reader);
  void rollBack();

  struct Content;
  std::unique_ptr<Content> content;
};
} // namespace host
