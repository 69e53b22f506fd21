// Lists all rules in the order of their subjects, and finds one by its id.
#include "Finding.h"

#include <algorithm>
#include <utility>

#include "Rules.h"

namespace cli::check
{

Finding& Report::add(const Span& place, std::string text)
{
  all.push_back({rule, place, std::move(text), {}, {}});
  return all.back();
}

const std::vector<const Rule*>& allRules()
{
  static const std::vector<const Rule*> rules = []
  {
    std::vector<const Rule*> collected;
    for (const auto* subject : {&fileRules(), &lineRules(), &notationRules(), &textRules(), &nameRules(),
                                &identityRules(), &effectRules(), &userDataRules(), &valueRules(), &serviceRules()})
    {
      for (const Rule& rule : *subject)
        collected.push_back(&rule);
    }
    return collected;
  }();
  return rules;
}

const Rule* findRule(const std::string& id)
{
  const auto& rules = allRules();
  const auto found = std::find_if(rules.begin(), rules.end(), [&](const Rule* rule) { return id == rule->id; });
  return found == rules.end() ? nullptr : *found;
}

} // namespace cli::check
