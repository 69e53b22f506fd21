// SQLite's way of saying things.
#pragma once

#include <filesystem>
#include <string>

#include "Dialect.h"

namespace host
{
class SqliteDialect : public Dialect
{
public:
  const soci::backend_factory& driver() const override;
  Trouble troubleOf(const soci::soci_error& error, int systemError) const override;
  std::string reasonOf(const soci::soci_error& error) const override;
  std::string beginningToWrite() const override;
  std::string rowNumberType() const override;
  std::string namesInUse() const override;
  std::string quoted(const std::string& name) const override;
  bool isReserved(const std::string& name) const override;

  /// The file as the driver wants it told. Throws `Error` for a name that it cannot be told.
  static std::string connectionText(const std::filesystem::path& file);
};

/// The only one that is needed.
const SqliteDialect& sqliteDialect();
} // namespace host
