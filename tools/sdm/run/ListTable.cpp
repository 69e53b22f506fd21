// The table of items.
#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <set>

#include "CommandFunctions.h"
#include "Shown.h"

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

std::vector<const MapItem*> itemsWith(const ItemTable& table, const std::string& prefix)
{
  std::vector<const MapItem*> items;
  for (const std::string& rootId : table.rootIds())
  {
    if (rootId.compare(0, prefix.size(), prefix) == 0)
      items.push_back(table.find(rootId));
  }
  return items;
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

void printRow(Session& session, const Row& row, const std::array<std::size_t, columnCount>& widths, bool heading)
{
  std::string line;
  for (std::size_t i = 0; i < columnCount; ++i)
    line += padded(clipped(row[i], i == 0 ? row[i].size() : longestCell), widths[i]) + "  ";
  line.erase(line.find_last_not_of(' ') + 1);
  session.out << (heading ? session.style.strong(line) : line) << "\n";
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
  Arguments arguments = words;
  const bool asJson = takeJsonWord(arguments);
  if (arguments.size() > 1)
    return session.refuse("usage: list [--json] [PREFIX]");
  const std::string prefix = arguments.empty() ? "" : arguments.front();
  const auto items = itemsWith(session.running.items(), prefix);
  if (items.empty())
  {
    // Says as well what may have been meant.
    session.known(prefix);
    return Outcome::refused;
  }
  if (asJson)
  {
    writeJson(session, jsonOf(session, items));
    return Outcome::done;
  }
  const Row heading = {"ITEM", "VALUE", "DEFAULT", "FROM", "GROUP", "FLAGS"};
  const auto rows = rowsOf(session, items);
  std::array<std::size_t, columnCount> widths{};
  for (std::size_t i = 0; i < columnCount; ++i)
  {
    widths[i] = width(heading[i]);
    for (const Row& row : rows)
      widths[i] = std::max(widths[i], width(clipped(row[i], i == 0 ? row[i].size() : longestCell)));
  }
  printRow(session, heading, widths, true);
  for (const Row& row : rows)
    printRow(session, row, widths, false);
  session.out << session.style.faint("E encrypted  U user data  L on the device only  K locked  ! the database holds "
                                     "another value  X its value there cannot be decrypted")
              << "\n";
  return Outcome::done;
}

} // namespace cli
