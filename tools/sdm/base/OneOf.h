// Options that take one of some words, or a number between two.
#pragma once

#include <CLI/CLI.hpp>

#include <charconv>
#include <cstdint>
#include <map>
#include <string>
#include <system_error>
#include <type_traits>
#include <vector>

#include "Shown.h"
#include "Suggestion.h"

namespace cli
{

/// Turns a word into the number of its value, and refuses every other text in words of its own.
template <typename Value>
CLI::Validator oneOf(const std::map<std::string, Value>& words)
{
  return CLI::Validator(
      [words](std::string& text)
      {
        const auto found = words.find(text);
        std::string all;
        std::vector<std::string> known;
        for (const auto& [word, value] : words)
        {
          all += (all.empty() ? "" : ", ") + word;
          known.push_back(word);
        }
        const std::string hint = didYouMean(text, known);
        if (found == words.end())
          return shownValue(text) + " is none of " + all + (hint.empty() ? "" : "; " + hint);
        text = std::to_string(static_cast<std::underlying_type_t<Value>>(found->second));
        return std::string();
      },
      "");
}

/// Refuses every text but the whole numbers from `lowest` to `highest`, in words of its own.
inline CLI::Validator between(std::int64_t lowest, std::int64_t highest)
{
  const std::string least = std::to_string(lowest);
  const std::string most = std::to_string(highest);
  return {[=](std::string& text)
          {
            std::int64_t number = 0;
            const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), number);
            const bool whole = problem == std::errc() && end == text.data() + text.size();
            return whole && number >= lowest && number <= highest
                       ? std::string()
                       : shownValue(text) + " is no whole number from " + least + " to " + most;
          },
          "INT in [" + least + " - " + most + "]"};
}

} // namespace cli
