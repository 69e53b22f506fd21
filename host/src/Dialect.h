// What differs between the databases that a connection can lead to. Everything else is written in the SQL that they
// share.
#pragma once

#include <string>

namespace soci
{
class backend_factory;
class soci_error;
} // namespace soci

namespace host
{
class Dialect
{
public:
  /// What an error means to whoever works with the database.
  enum class Trouble
  {
    damaged,
    /// Advice follows from which of the three it is.
    diskFull,
    diskFailed,
    notWritable,
    busy,
    lost,
    noTransaction,
    other
  };

  virtual ~Dialect() = default;

  /// The driver's side; it lives as long as the process.
  virtual const soci::backend_factory& driver() const = 0;

  /// `systemError` is the number of the system's error behind this one; 0 where it is not known.
  virtual Trouble troubleOf(const soci::soci_error& error, int systemError) const = 0;

  /// The database's own words, without the driver's.
  virtual std::string reasonOf(const soci::soci_error& error) const = 0;

  /// The statement that begins a transaction which will write. It takes the right to write at once, so that what is
  /// read within still holds when it is written.
  virtual std::string beginningToWrite() const = 0;

  /// The type of a column that numbers the rows as they are made and is the table's key.
  virtual std::string rowNumberType() const = 0;

  /// A query for the names that tables and indexes have, in lower case, one a row.
  virtual std::string namesInUse() const = 0;

  /// The name as an identifier, whatever characters it has. One that is not there is an error.
  virtual std::string quoted(const std::string& name) const = 0;

  /// Whether the database keeps names like this, in lower case, to itself.
  virtual bool isReserved(const std::string& name) const = 0;
};
} // namespace host
