// Finds secrets in texts of services: reasons for refusals, texts of exceptions.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace cli
{

/// The forms in which a text may repeat a secret: plain, and escaped for XML, JSON or a terminal.
std::vector<std::string> formsOf(const std::string& secret);

/// Texts to look for, each with what takes its place; the longest goes first.
class SecretTexts
{
public:
  /// Texts of fewer bytes than this are not looked for; up to 7 bytes they count only as words of their own, since they
  /// stand in harmless words as well.
  explicit SecretTexts(std::size_t shortest) : least(shortest)
  {
  }

  void add(const std::string& text, const std::string& inItsPlace);

  bool empty() const
  {
    return found.empty();
  }

  /// The text with all of them replaced.
  std::string without(const std::string& text) const;

private:
  struct LongestFirst
  {
    bool operator()(const std::string& a, const std::string& b) const
    {
      return a.size() != b.size() ? a.size() > b.size() : a < b;
    }
  };

  const std::size_t least;
  std::map<std::string, std::string, LongestFirst> found;
};

} // namespace cli
