// An option that takes one of some words.
#pragma once

#include <CLI/CLI.hpp>

#include <map>
#include <string>
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

} // namespace cli
