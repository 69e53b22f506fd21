// The table of items.
#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <nlohmann/json.hpp>
#include <numeric>
#include <optional>
#include <set>

#include "CommandFunctions.h"
#include "base/Screen.h"
#include "base/Shown.h"

namespace cli
{
namespace
{

constexpr std::size_t columnCount = 6;
constexpr std::size_t longestCell = 32;

using Json = nlohmann::ordered_json;
using Row = std::array<std::string, columnCount>;

std::string flagsOf(Session& session, const MapItem& item, const std::string& value,
                    const std::set<std::string>& locked)
{
  std::string flags;
  flags += item.encrypted ? "E" : "";
  flags += item.userData ? "U" : "";
  flags += item.isLocal() ? "L" : "";
  flags += locked.count(item.rootId) != 0 ? "K" : "";
  flags += session.running.isUndecryptable(item) ? "X" : "";
  flags += session.differsFromDatabase(item, value) ? "!" : "";
  return flags;
}

std::set<std::string> lockedItems(Session& session)
{
  const auto ids = session.running.device().store().lockedItems();
  return {ids.begin(), ids.end()};
}

/// What the words of a `list` ask for.
struct ListOptions
{
  bool json = false;
  bool changed = false;
  std::string part;
};

std::optional<ListOptions> wantedBy(const Arguments& words)
{
  ListOptions wanted;
  for (const std::string& word : words)
  {
    if (word == jsonWord && !wanted.json)
      wanted.json = true;
    else if (word == changedWord && !wanted.changed)
      wanted.changed = true;
    else if (wanted.part.empty())
      wanted.part = word;
    else
      return std::nullopt;
  }
  return wanted;
}

std::vector<const MapItem*> itemsWith(const ItemTable& table, const std::string& part)
{
  std::vector<const MapItem*> items;
  for (const std::string& rootId : table.rootIds())
  {
    if (rootId.find(part) != std::string::npos)
      items.push_back(table.find(rootId));
  }
  return items;
}

/// Whether the service works with another value than the default, as far as somebody answers for it.
bool isChanged(Session& session, const MapItem& item, const std::map<std::string, std::string>& values)
{
  const std::string& byDefault = session.running.defaultOf(item);
  if (session.running.masking().isSecret(item))
    return session.running.service().watch().taken(item.setter, item.indexValue).value_or(byDefault) != byDefault;
  const auto value = values.find(item.rootId);
  return value != values.end() && value->second != byDefault;
}

void keepChanged(Session& session, std::vector<const MapItem*>& items)
{
  const auto values = session.values(items);
  items.erase(std::remove_if(items.begin(), items.end(),
                             [&](const MapItem* item) { return !isChanged(session, *item, values); }),
              items.end());
}

std::vector<Row> rowsOf(Session& session, const std::vector<const MapItem*>& items)
{
  const auto values = session.values(items);
  const auto locked = lockedItems(session);
  const Masking& masking = session.running.masking();
  std::vector<Row> rows;
  for (const MapItem* item : items)
  {
    const auto found = values.find(item->rootId);
    const bool readable = found != values.end() || masking.isSecret(*item);
    const std::string value = found == values.end() ? "" : found->second;
    rows.push_back({shown(item->rootId), readable ? masking.value(*item, value) : "?",
                    masking.value(*item, session.running.defaultOf(*item)), readable ? session.origin(*item) : "nobody",
                    shown(item->group), flagsOf(session, *item, value, locked)});
  }
  return rows;
}

using Widths = std::array<std::size_t, columnCount>;

constexpr const char* blanks = "  ";

/// Those that the cells take, at most; what the screen has no room for is taken from the widest of the texts that may
/// be cut. Root ids are whole, since they are typed again.
Widths widthsOf(const std::vector<Row>& rows, std::size_t columns)
{
  constexpr std::array<std::size_t, 3> cuttable = {1, 2, 4};
  constexpr std::size_t narrowest = 8;
  Widths widths{};
  for (const Row& row : rows)
  {
    for (std::size_t i = 0; i < columnCount; ++i)
      widths[i] = std::max(widths[i], i == 0 ? width(row[i]) : std::min(width(row[i]), longestCell));
  }
  const std::size_t between = (columnCount - 1) * std::strlen(blanks);
  while (columns != 0 && std::accumulate(widths.begin(), widths.end(), between) > columns)
  {
    const std::size_t widest = *std::max_element(cuttable.begin(), cuttable.end(),
                                                 [&](std::size_t a, std::size_t b) { return widths[a] < widths[b]; });
    if (widths[widest] <= narrowest)
      break;
    --widths[widest];
  }
  return widths;
}

std::string lineOf(const Row& row, const Widths& widths)
{
  std::string line;
  for (std::size_t i = 0; i < columnCount; ++i)
    line += padded(clipped(row[i], widths[i]), widths[i]) + blanks;
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

void printTable(Session& session, const std::vector<const MapItem*>& items)
{
  std::vector<Row> rows = rowsOf(session, items);
  rows.insert(rows.begin(), {"ITEM", "VALUE", "DEFAULT", "FROM", "GROUP", "FLAGS"});
  const Widths widths = widthsOf(rows, session.columns);
  session.out << session.style.strong(lineOf(rows.front(), widths)) << "\n";
  for (std::size_t i = 1; i < rows.size(); ++i)
    session.out << lineOf(rows[i], widths) << "\n";
  session.out << session.style.faint(wrapped("E encrypted, U user data, L on the device only, K locked, ! the database "
                                             "holds another value, X its value there cannot be decrypted",
                                             session.columns, 0))
              << "\n";
}

/// What the table has, for programs: nothing is cut, and what nobody answers for is null.
Json jsonOf(Session& session, const std::vector<const MapItem*>& items)
{
  const auto values = session.values(items);
  const auto locked = lockedItems(session);
  const Masking& masking = session.running.masking();
  Json list = Json::array();
  for (const MapItem* item : items)
  {
    const auto masked = [&](const std::string& text) { return masking.isSecret(*item) ? Masking::mask : text; };
    const auto found = values.find(item->rootId);
    const bool readable = found != values.end() || masking.isSecret(*item);
    const std::string value = found == values.end() ? "" : found->second;
    list.push_back({{"item", item->rootId},
                    {"value", readable ? Json(masked(value)) : Json()},
                    {"default", masked(session.running.defaultOf(*item))},
                    {"from", readable ? Json(session.origin(*item)) : Json()},
                    {"group", item->group.empty() ? Json() : Json(item->group)},
                    {"encrypted", item->encrypted},
                    {"userData", item->userData},
                    {"local", item->isLocal()},
                    {"locked", locked.count(item->rootId) != 0},
                    {"undecryptable", session.running.isUndecryptable(*item)},
                    {"differsFromDatabase", session.differsFromDatabase(*item, value)}});
  }
  return {{"items", list}};
}

} // namespace

Outcome listItems(Session& session, const Arguments& words)
{
  const auto wanted = wantedBy(words);
  if (!wanted)
    return session.refuse("usage: list [--json] [--changed] [PART]");
  auto items = itemsWith(session.running.items(), wanted->part);
  if (items.empty())
  {
    // Says as well what may have been meant.
    session.known(wanted->part);
    return Outcome::refused;
  }
  if (wanted->changed)
    keepChanged(session, items);
  if (wanted->json)
    writeJson(session, jsonOf(session, items));
  else if (items.empty())
    session.out << "every item is at its default\n";
  else
    printTable(session, items);
  return Outcome::done;
}

} // namespace cli
