// What can be asked about rules: `--explain` and `--rules`; and the options that tell how findings are told.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Formats.h"
#include "base/Subcommand.h"

namespace CLI
{
class Option;
}

namespace cli::findings
{

struct RuleQuestions
{
  /// Empty for all rules.
  std::string explained;
  bool explains = false;
  bool lists = false;
};

/// Refuses the id of no rule, with those that might be meant; empty for a known one.
std::string refusalOfRule(const std::vector<RuleText>& rules, const std::string& id);

/// Adds `--explain` and `--rules`. `questions` and `rules` have to live as long as the options.
void addRuleOptions(CLI::App& app, RuleQuestions& questions, const std::vector<RuleText>& rules);

/// Answers what was asked about rules. Nothing when nothing was asked. `file` is one that was named all the same, which
/// is wrong usage of the subcommand; empty when there is none.
std::optional<ExitCode> answer(const std::string& subcommand, const RuleQuestions& questions, const std::string& file,
                               const std::vector<RuleText>& rules, Format format);

/// Adds `--format` and `--json`. The format has to live as long as the options.
void addFormatOptions(CLI::App& app, Format& format);

/// Adds `--fail-on`, whose default is what `failOn` holds. It has to live as long as the option.
CLI::Option* addFailOnOption(CLI::App& app, FailOn& failOn, const std::string& help, const std::string& defaultText);

} // namespace cli::findings
