// Tells the rules themselves.
#include "Check.h"

#include <algorithm>
#include <iostream>
#include <sstream>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "base/Shown.h"
#include "base/Style.h"

namespace cli::check
{
namespace
{

constexpr std::size_t textWidth = 100;

std::string wrapped(const std::string& text)
{
  std::istringstream words(text);
  std::string made;
  std::size_t column = 0;
  for (std::string word; words >> word; column += word.size())
  {
    const bool fits = column + 1 + word.size() <= textWidth;
    made += column == 0 ? "" : fits ? " " : "\n";
    column = column == 0 || !fits ? 0 : column + 1;
    made += word;
  }
  return made + "\n";
}

std::string coloured(const Style& style, const Rule& rule)
{
  const std::string name = padded(severityName(rule.severity), 7);
  if (rule.severity == Severity::note)
    return style.faint(name);
  return rule.severity == Severity::error ? style.bad(name) : style.notable(name);
}

nlohmann::ordered_json jsonOf(const Rule& rule)
{
  return {{"id", rule.id},
          {"severity", severityName(rule.severity)},
          {"fixable", rule.fixable},
          {"summary", rule.summary},
          {"explanation", rule.explanation}};
}

} // namespace

void explainRule(const Rule& rule, Format format)
{
  if (format != Format::text)
  {
    std::cout << jsonOf(rule).dump(2) << "\n";
    return;
  }
  const Style style(wantsColours(STDOUT_FILENO));
  std::cout << style.strong(rule.id) << " (" << severityName(rule.severity)
            << (rule.fixable ? ", can be mended by --fix" : "") << ")\n\n"
            << wrapped(rule.summary) << "\n"
            << wrapped(rule.explanation);
}

void listRules(Format format)
{
  if (format != Format::text)
  {
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    for (const Rule* rule : allRules())
      all.push_back(jsonOf(*rule));
    std::cout << all.dump(2) << "\n";
    return;
  }
  const Style style(wantsColours(STDOUT_FILENO));
  std::size_t longest = 0;
  for (const Rule* rule : allRules())
    longest = std::max(longest, width(rule->id));
  for (const Rule* rule : allRules())
    std::cout << style.strong(padded(rule->id, longest)) << "  " << coloured(style, *rule) << "  " << rule->summary
              << "\n";
}

} // namespace cli::check
