// A statement with room for what goes in and comes out; compiled once, run as often as wanted.
#pragma once

#include <soci/soci.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "Connection.h"

namespace host
{
/// All of it throws what the driver throws.
class PreparedStatement
{
public:
  PreparedStatement(soci::session& session, const std::string& sql, std::size_t columns, std::size_t values)
      : inputs(values), texts(columns), indicators(columns, soci::i_ok), row(columns), statement(session)
  {
    for (std::size_t i = 0; i < columns; ++i)
      statement.exchange(soci::into(texts[i], indicators[i]));
    for (const std::string& input : inputs)
      statement.exchange(soci::use(input));
    statement.alloc();
    statement.prepare(sql);
    statement.define_and_bind();
  }

  /// Takes the values, as many as it was made for. Returns how many rows it changed, when it is no query.
  std::size_t run(Connection::Values& values)
  {
    std::swap_ranges(values.begin(), values.end(), inputs.begin());
    statement.execute(texts.empty());
    return texts.empty() ? static_cast<std::size_t>(statement.get_affected_rows()) : 0;
  }

  /// The next row, until the next call; null when there is none any more.
  const Connection::Row* fetch()
  {
    if (!statement.fetch())
      return nullptr;
    for (std::size_t i = 0; i < texts.size(); ++i)
      if (indicators[i] == soci::i_ok)
        row[i] = texts[i];
      else
        row[i].reset();
    return &row;
  }

private:
  Connection::Values inputs;
  std::vector<std::string> texts;
  std::vector<soci::indicator> indicators;
  Connection::Row row;
  soci::statement statement;
};
} // namespace host
