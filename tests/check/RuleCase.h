// A map that breaks one rule, and one beside it that breaks none.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace checktest
{

struct RuleCase
{
  const char* rule;
  /// Breaks the rule once, and no other.
  std::string broken;
  std::size_t line;
  std::size_t column;
  /// Comes close, and breaks none.
  std::string sound;
  /// What --fix makes of the broken one; equal to it where nothing can be mended.
  std::string mended;
};

std::vector<RuleCase> fileCases();
std::vector<RuleCase> lineCases();
std::vector<RuleCase> textCases();
std::vector<RuleCase> nameCases();
std::vector<RuleCase> identityCases();
std::vector<RuleCase> effectCases();
std::vector<RuleCase> userDataCases();
std::vector<RuleCase> valueCases();

/// Nothing can be mended.
inline RuleCase lasting(const char* rule, const std::string& broken, std::size_t line, std::size_t column,
                        const std::string& sound)
{
  return {rule, broken, line, column, sound, broken};
}

/// Mended, it is the sound one.
inline RuleCase mendable(const char* rule, const std::string& broken, std::size_t line, std::size_t column,
                         const std::string& sound)
{
  return {rule, broken, line, column, sound, sound};
}

/// An item that nothing can be said about.
inline const std::string soundItem = "ok.item,Sound,Value,,,1,setOk,getOk,,,,\n";

} // namespace checktest
