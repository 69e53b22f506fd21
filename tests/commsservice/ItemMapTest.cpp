// The item map and the table of settings say the same, and the map keeps the rules that its readers rely on.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "GroupRules.h"
#include "ItemMapFile.h"
#include "LiveValues.h"
#include "Settings.h"

using namespace commsservice;
using Column = sdm::ItemMapColumn;

namespace
{

using Row = std::map<Column, std::string>;

std::vector<Row> mapRows()
{
  sdm::ItemMapFile file(SAMPLE_MAP);
  std::vector<Row> rows;
  for (auto line = file.next(); line != sdm::ItemMapFile::Line::end; line = file.next())
  {
    EXPECT_EQ(line, sdm::ItemMapFile::Line::item) << "line " << file.lineNumber();
    if (line != sdm::ItemMapFile::Line::item)
      break;
    Row row;
    for (std::size_t i = 0; i < static_cast<std::size_t>(Column::count); ++i)
      row[static_cast<Column>(i)] = file.column(static_cast<Column>(i));
    rows.push_back(row);
  }
  return rows;
}

const Setting* settingNamed(const std::string& name)
{
  for (const Setting& setting : settings())
  {
    if (setting.name == name)
      return &setting;
  }
  return nullptr;
}

const Setting* settingOf(Row& row)
{
  const std::string callback = row[Column::setter].empty() ? row[Column::getter] : row[Column::setter];
  return callback.size() > 3 ? settingNamed(callback.substr(3)) : nullptr;
}

} // namespace

TEST(CommsItemMap, HasSixtyItemsOrMoreWithDifferentRootIds)
{
  std::set<std::string> ids;
  for (Row& row : mapRows())
    EXPECT_TRUE(ids.insert(row[Column::rootId]).second) << row[Column::rootId];
  EXPECT_GE(ids.size(), 60U);
}

TEST(CommsItemMap, HasElevenCommasAndNoCarriageReturnInEveryLine)
{
  std::ifstream file(SAMPLE_MAP);
  for (std::string line; std::getline(file, line);)
  {
    EXPECT_EQ(std::count(line.begin(), line.end(), ','), 11) << line;
    EXPECT_EQ(line.find('\r'), std::string::npos) << line;
    EXPECT_TRUE(line.size() > 9 && line.size() <= 500) << line;
  }
}

TEST(CommsItemMap, NamesCallbacksOfOneSettingEach)
{
  for (Row& row : mapRows())
  {
    const Setting* setting = settingOf(row);
    ASSERT_NE(setting, nullptr) << row[Column::rootId];
    EXPECT_EQ(row[Column::setter], setting->readOnly ? "" : "set" + setting->name) << row[Column::rootId];
    EXPECT_EQ(row[Column::getter], setting->secret ? "" : "get" + setting->name) << row[Column::rootId];
  }
}

TEST(CommsItemMap, HasAnItemForEveryRowOfEverySetting)
{
  std::map<std::string, std::set<std::string>> found;
  for (Row& row : mapRows())
    EXPECT_TRUE(found[settingOf(row)->name].insert(row[Column::dasIndexValue]).second) << row[Column::rootId];
  EXPECT_EQ(found.size(), settings().size());
  for (const Setting& setting : settings())
  {
    EXPECT_EQ(found[setting.name].size(), static_cast<std::size_t>(std::max(1, setting.rows))) << setting.name;
    for (const std::string& row : found[setting.name])
      EXPECT_TRUE(LiveValues(settings()).has(setting.name, row)) << setting.name << " row " << row;
  }
}

TEST(CommsItemMap, StartsTheServiceWithTheDefaults)
{
  for (Row& row : mapRows())
    EXPECT_EQ(settingOf(row)->initial, row[Column::defaultValue]) << row[Column::rootId];
}

TEST(CommsItemMap, HasOnlyDefaultsThatTheSettersTake)
{
  for (Row& row : mapRows())
  {
    EXPECT_EQ(settingOf(row)->rule(row[Column::defaultValue]), "") << row[Column::rootId];
    if (!row[Column::alternativeDefault].empty())
    {
      EXPECT_EQ(settingOf(row)->rule(row[Column::alternativeDefault]), "") << row[Column::rootId];
    }
  }
}

TEST(CommsItemMap, HasDefaultsThatEveryGroupTakes)
{
  std::map<std::string, std::string> defaults;
  std::map<std::string, std::string> alternatives;
  for (Row& row : mapRows())
  {
    const std::string name = settingOf(row)->name;
    const std::string& alternative = row[Column::alternativeDefault];
    defaults[name] = row[Column::defaultValue];
    alternatives[name] = alternative.empty() ? defaults[name] : alternative;
  }
  for (const GroupRule& rule : groupRules())
  {
    EXPECT_EQ(rule.judge([&](const std::string& name) { return defaults[name]; }), "") << rule.name;
    EXPECT_EQ(rule.judge([&](const std::string& name) { return alternatives[name]; }), "") << rule.name;
  }
}

TEST(CommsItemMap, PutsExactlyTheMembersIntoTheirGroups)
{
  for (Row& row : mapRows())
  {
    const Setting* setting = settingOf(row);
    EXPECT_EQ(row[Column::isGroupItem], setting->group) << row[Column::rootId];
    if (!setting->group.empty())
    {
      EXPECT_EQ(setting->rootId, row[Column::rootId]);
    }
  }
}

TEST(CommsItemMap, StoresEverySecretEncryptedAndNothingElse)
{
  for (Row& row : mapRows())
  {
    EXPECT_EQ(row[Column::dasEncrypted], settingOf(row)->secret ? "true" : "") << row[Column::rootId];
    EXPECT_FALSE(settingOf(row)->secret && settingOf(row)->localOnly) << row[Column::rootId];
  }
}

TEST(CommsItemMap, NumbersLocalItemsInTheirRootIdsAsInTheirIndexValues)
{
  for (Row& row : mapRows())
  {
    EXPECT_EQ(row[Column::dasSchema].empty(), settingOf(row)->localOnly) << row[Column::rootId];
    const std::string& id = row[Column::rootId];
    const std::size_t hyphen = id.find_last_not_of("0123456789");
    const bool numbered = hyphen != std::string::npos && id[hyphen] == '-';
    if (settingOf(row)->localOnly)
    {
      EXPECT_EQ(numbered ? id.substr(hyphen + 1) : "", row[Column::dasIndexValue]) << id;
    }
  }
}

TEST(CommsItemMap, HasUserDataThatCanBeCutOutOfAReply)
{
  for (Row& row : mapRows())
  {
    if (row[Column::userData].empty())
      continue;
    const std::string before = "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"" + row[Column::dasSchema] +
                               "\"><ReasonForMessage>read_response</ReasonForMessage><Entry>";
    EXPECT_EQ(before.find(row[Column::dasItem]), std::string::npos) << row[Column::rootId];
    EXPECT_EQ(row[Column::dasIndexName], "") << row[Column::rootId];
    EXPECT_EQ(row[Column::isGroupItem], "") << row[Column::rootId];
  }
}

TEST(CommsItemMap, HasUserDataWhoseMissingValueIsNoValue)
{
  for (Row& row : mapRows())
  {
    if (!row[Column::userData].empty() && !row[Column::defaultValue].empty())
    {
      EXPECT_NE(settingOf(row)->rule(""), "") << row[Column::rootId];
    }
    if (!row[Column::userData].empty())
    {
      EXPECT_NE(settingOf(row)->rule("a&b"), "") << row[Column::rootId];
    }
  }
}

TEST(CommsItemMap, GivesEveryRowOfASchemaTheSameIndexColumn)
{
  std::map<std::string, std::string> indexes;
  for (Row& row : mapRows())
  {
    const auto [place, isNew] = indexes.emplace(row[Column::dasSchema], row[Column::dasIndexName]);
    EXPECT_EQ(place->second, row[Column::dasIndexName]) << row[Column::rootId];
  }
}
