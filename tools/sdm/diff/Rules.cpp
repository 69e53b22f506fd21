// All rules by subject, and the rule of an id.
#include "Rules.h"

#include <algorithm>

#include "RulesBySubject.h"

namespace cli::diff
{

const std::vector<Rule>& allRules()
{
  static const std::vector<Rule> rules = []
  {
    std::vector<Rule> all;
    for (const auto& subject : {itemRules(), cellRules(), valueRules(), callbackRules(), lineRules()})
      all.insert(all.end(), subject.begin(), subject.end());
    return all;
  }();
  return rules;
}

const Rule* findRule(const std::string& id)
{
  const auto& rules = allRules();
  const auto found = std::find_if(rules.begin(), rules.end(), [&](const Rule& rule) { return id == rule.id; });
  return found == rules.end() ? nullptr : &*found;
}

} // namespace cli::diff
