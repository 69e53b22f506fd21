// Answers the questions about rules, and refuses those about unknown ones.
#include "RuleQuestions.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>
#include <map>
#include <unistd.h>

#include "base/OneOf.h"
#include "base/Screen.h"
#include "base/Shown.h"
#include "base/Style.h"
#include "base/Suggestion.h"

namespace cli::findings
{
namespace
{

constexpr std::size_t textWidth = 100;

void explain(const RuleText& rule, Format format)
{
  if (format != Format::text)
    return write(std::cout, rule.json);
  const Style style(wantsColours(STDOUT_FILENO));
  const auto paragraph = [](const std::string& text) { return wrapped(text, textWidth, 0) + "\n"; };
  std::cout << style.strong(rule.id) << " (" << severityName(rule.severity) << rule.remark << ")\n\n"
            << paragraph(rule.summary) << "\n"
            << paragraph(rule.explanation);
}

void list(const std::vector<RuleText>& rules, Format format)
{
  if (format != Format::text)
  {
    Json all = Json::array();
    for (const RuleText& rule : rules)
      all.push_back(rule.json);
    return write(std::cout, all);
  }
  const Style style(wantsColours(STDOUT_FILENO));
  std::size_t longest = 0;
  for (const RuleText& rule : rules)
    longest = std::max(longest, width(rule.id));
  for (const RuleText& rule : rules)
    std::cout << style.strong(padded(rule.id, longest)) << "  "
              << coloured(style, rule.severity, padded(severityName(rule.severity), 7)) << "  " << rule.summary << "\n";
}

} // namespace

std::string refusalOfRule(const std::vector<RuleText>& rules, const std::string& id)
{
  std::vector<std::string> known;
  known.reserve(rules.size());
  for (const RuleText& rule : rules)
    known.push_back(rule.id);
  if (id.empty() || std::find(known.begin(), known.end(), id) != known.end())
    return "";
  const std::string hint = didYouMean(id, known);
  return "there is no rule " + shownValue(id) + (hint.empty() ? "" : "; " + hint);
}

void addRuleOptions(CLI::App& app, RuleQuestions& questions, const std::vector<RuleText>& rules)
{
  CLI::Option* option =
      app.add_option("--explain", questions.explained, "Tell what is behind a rule; without a rule list them all")
          ->type_name("RULE")
          ->expected(0, 1)
          ->check([&rules](const std::string& id) { return refusalOfRule(rules, id); }, "");
  app.add_flag("--rules", questions.lists, "List all rules");
  // The options are gone when the action runs.
  app.parse_complete_callback([&questions, option] { questions.explains = option->count() > 0; });
}

std::optional<ExitCode> answer(const std::string& subcommand, const RuleQuestions& questions, const std::string& file,
                               const std::vector<RuleText>& rules, Format format)
{
  if (!questions.lists && !questions.explains)
    return std::nullopt;
  if (!file.empty())
  {
    std::cerr << "sdm: " << (questions.lists ? "--rules lists" : "--explain tells of")
              << " rules and takes no map, but " << shownValue(file) << "\nTry `sdm " << subcommand << " --help`.\n";
    return exitUsage;
  }
  const auto named =
      std::find_if(rules.begin(), rules.end(), [&](const RuleText& rule) { return rule.id == questions.explained; });
  if (questions.lists || named == rules.end())
    list(rules, format);
  else
    explain(*named, format);
  return exitDone;
}

void addFormatOptions(CLI::App& app, Format& format)
{
  static const std::map<std::string, Format> formats = {
      {"text", Format::text},   {"json", Format::json},     {"sarif", Format::sarif},  {"markdown", Format::markdown},
      {"junit", Format::junit}, {"gitlab", Format::gitlab}, {"github", Format::github}};
  app.add_option("--format", format,
                 "How findings are told: text, json, sarif, markdown, junit, gitlab, or github, which is for "
                 "annotations of a workflow; sarif is SARIF 2.1.0, gitlab a report of code quality")
      ->type_name("FORMAT")
      ->transform(oneOf(formats))
      ->default_str("text");
  app.add_flag_callback(
      "--json", [&format] { format = Format::json; }, "The same as --format json");
}

CLI::Option* addFailOnOption(CLI::App& app, FailOn& failOn, const std::string& help, const std::string& defaultText)
{
  static const std::map<std::string, FailOn> words = {
      {"error", FailOn::error}, {"warning", FailOn::warning}, {"note", FailOn::note}, {"never", FailOn::never}};
  return app.add_option("--fail-on", failOn, help)
      ->type_name("LEVEL")
      ->transform(oneOf(words))
      ->default_str(defaultText);
}

} // namespace cli::findings
