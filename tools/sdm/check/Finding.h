// What the checks of item maps find, and the rules that they go by.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "findings/Severity.h"
#include "map/MapText.h"

namespace cli
{
class ItemText;
}

namespace cli::check
{

/// A change of the file that mends something.
struct Edit
{
  Span place;
  std::string replacement;
};

/// Another place that a finding speaks of.
struct Related
{
  Span place;
  std::string text;
};

struct Rule;

struct Finding
{
  const Rule* rule = nullptr;
  Span place;
  /// One sentence without a full stop, safe to show on a terminal.
  std::string text;
  std::vector<Related> related;
  /// Empty when nobody but the author can tell what was meant.
  std::vector<Edit> fix;
};

/// Takes down the findings of one rule.
class Report
{
public:
  Report(const Rule& whose, std::vector<Finding>& findings) : rule(&whose), all(findings)
  {
  }

  /// The finding may be added to until the next one.
  Finding& add(const Span& place, std::string text);

private:
  const Rule* rule;
  std::vector<Finding>& all;
};

/// How a rule looks: at the map as a whole, or at each item by itself. Empty for what only the trial of a service
/// finds.
using LookAtMap = void (*)(const MapText& map, Report& report);
using LookAtItem = void (*)(const ItemText& item, Report& report);
using Look = std::variant<std::monostate, LookAtMap, LookAtItem>;

struct Rule
{
  /// Lower-case words joined by hyphens; never changes once it was published.
  const char* id;
  Severity severity;
  /// Whether `--fix` can mend what it finds, at least at times.
  bool fixable;
  /// One sentence: what is wrong.
  const char* summary;
  /// What the library does with it, what the service notices, what to do about it.
  const char* explanation;
  Look look;
};

/// All rules, by subject: the order in which they are told.
const std::vector<const Rule*>& allRules();

/// Null when there is none.
const Rule* findRule(const std::string& id);

} // namespace cli::check
