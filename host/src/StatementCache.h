// Prepared statements by their text. The longest unused go first, so that those which come again and again stay.
#pragma once

#include <cstddef>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace host
{
/// Keeps at most so many statements, and of so many bytes together. The latest is kept whatever its size.
template <typename Statement>
class StatementCache
{
public:
  StatementCache(std::size_t mostStatements, std::size_t mostBytes) : countLimit(mostStatements), byteLimit(mostBytes)
  {
  }

  /// The statement of this text, which is now the latest used; null when there is none.
  Statement* find(std::string_view sql)
  {
    const auto known = bySql.find(sql);
    if (known == bySql.end())
      return nullptr;
    latestFirst.splice(latestFirst.begin(), latestFirst, known->second);
    return &known->second->statement;
  }

  /// Makes a statement out of `arguments`, counts it as `bytes`, and drops others to make room. The text must be a new
  /// one. The statement stays where it is until it is dropped.
  template <typename... Arguments>
  Statement& add(const std::string& sql, std::size_t bytes, Arguments&&... arguments)
  {
    latestFirst.emplace_front(sql, bytes, std::forward<Arguments>(arguments)...);
    bySql.emplace(latestFirst.front().sql, latestFirst.begin());
    total += bytes;
    while (latestFirst.size() > 1 && (latestFirst.size() > countLimit || total > byteLimit))
      drop(latestFirst.back().sql);
    return latestFirst.front().statement;
  }

  void drop(std::string_view sql)
  {
    const auto known = bySql.find(sql);
    if (known == bySql.end())
      return;
    const auto entry = known->second;
    bySql.erase(known);
    total -= entry->bytes;
    latestFirst.erase(entry);
  }

  void clear()
  {
    bySql.clear();
    latestFirst.clear();
    total = 0;
  }

private:
  struct Entry
  {
    template <typename... Arguments>
    Entry(const std::string& itsSql, std::size_t itsBytes, Arguments&&... arguments)
        : sql(itsSql), bytes(itsBytes), statement(std::forward<Arguments>(arguments)...)
    {
    }

    std::string sql;
    std::size_t bytes;
    Statement statement;
  };

  std::size_t countLimit;
  std::size_t byteLimit;
  std::size_t total = 0;
  std::list<Entry> latestFirst;
  /// The texts are those of the entries.
  std::unordered_map<std::string_view, typename std::list<Entry>::iterator> bySql;
};
} // namespace host
