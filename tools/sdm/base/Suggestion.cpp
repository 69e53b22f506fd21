// Counts the letters to change, a swap of neighbours as one, and finds words that hold the other.
#include "Suggestion.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "Text.h"

#include "Shown.h"

namespace cli
{
namespace
{

constexpr std::size_t mostSuggestions = 3;

/// Letters to insert, remove, replace or swap with a neighbour to turn one text into the other.
std::size_t distance(const std::string& a, const std::string& b)
{
  std::vector<std::vector<std::size_t>> cost(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i)
    cost[i][0] = i;
  for (std::size_t j = 0; j <= b.size(); ++j)
    cost[0][j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i)
  {
    for (std::size_t j = 1; j <= b.size(); ++j)
    {
      cost[i][j] =
          std::min({cost[i - 1][j] + 1, cost[i][j - 1] + 1, cost[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
        cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
    }
  }
  return cost[a.size()][b.size()];
}

} // namespace

std::vector<std::string> suggestions(const std::string& unknown, const std::vector<std::string>& known)
{
  // Long texts are values in the wrong place; comparing them with everything would only take time.
  if (unknown.empty() || unknown.size() > 64)
    return {};
  const std::string wanted = lowered(unknown);
  const std::size_t limit = std::max<std::size_t>(1, wanted.size() / 3);
  std::vector<std::pair<std::size_t, std::string>> near;
  for (const std::string& word : known)
  {
    const std::string candidate = lowered(word);
    const std::size_t letters = distance(wanted, candidate);
    const bool held = wanted.size() >= 3 && candidate.find(wanted) != std::string::npos;
    if (letters <= limit || held)
      near.emplace_back(letters, word);
  }
  std::stable_sort(near.begin(), near.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<std::string> words;
  for (std::size_t i = 0; i < near.size() && i < mostSuggestions; ++i)
    words.push_back(near[i].second);
  return words;
}

std::string didYouMean(const std::string& unknown, const std::vector<std::string>& known, const std::string& end)
{
  const std::vector<std::string> words = suggestions(unknown, known);
  std::string list;
  for (std::size_t i = 0; i < words.size(); ++i)
    list += (i == 0 ? "" : i + 1 == words.size() ? " or " : ", ") + shown(words[i]);
  return list.empty() ? list : "did you mean " + list + "?" + end;
}

} // namespace cli
