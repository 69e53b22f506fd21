// The columns of an item map, and what the manual says of each.
#include "ItemMapColumn.h"

#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

std::string manual(const std::string& page)
{
  std::ifstream file(std::string(SDM_DOCS) + "/" + page);
  EXPECT_TRUE(file.is_open()) << page;
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

/// What stands between " and " and " and ".
std::vector<std::string> parts(const std::string& text)
{
  static const std::regex between(" and ");
  return {std::sregex_token_iterator(text.begin(), text.end(), between, -1), std::sregex_token_iterator()};
}

TEST(ItemMapColumn, HasAHeadingInTheManualUnderItsNumberAndItsWords)
{
  std::vector<std::string> expected;
  for (const sdm::ItemMapColumnNames& names : sdm::itemMapColumns)
    expected.push_back(std::to_string(expected.size() + 1) + ": " + names.words);

  const std::string page = manual("itemmap.md");
  const std::regex heading("\n### ([0-9][^:\n]*): ([^\n]*)");
  std::vector<std::string> found;
  for (auto match = std::sregex_iterator(page.begin(), page.end(), heading); match != std::sregex_iterator(); ++match)
  {
    const auto numbers = parts((*match)[1]);
    const auto words = parts((*match)[2]);
    ASSERT_EQ(numbers.size(), words.size()) << match->str();
    for (std::size_t i = 0; i < numbers.size(); ++i)
      found.push_back(numbers[i] + ": " + words[i]);
  }
  EXPECT_EQ(found, expected);
}

TEST(ItemMapColumn, IsExplainedToOwnersOfDictionariesUnderItsKey)
{
  for (const char* page : {"itemmap.md", "service.md"})
  {
    const std::string text = manual(page);
    for (const sdm::ItemMapColumnNames& names : sdm::itemMapColumns)
    {
      if (names.key == nullptr)
        continue;
      const std::regex key("[`/]" + std::string(names.key) + "`");
      EXPECT_TRUE(std::regex_search(text, key)) << names.key << " in " << page;
    }
  }
}

} // namespace
