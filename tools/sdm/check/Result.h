// What the check of one map came to, and the forms in which it is told.
#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "Finding.h"
#include "Linter.h"
#include "base/Style.h"
#include "findings/Report.h"

namespace cli::check
{

struct Result
{
  std::string path;
  /// Empty when the map was read, and mended if that was wanted.
  std::string failure;
  /// Null when it was not read.
  std::unique_ptr<MapText> map;
  std::vector<Finding> findings;
  std::vector<Mended> mended;

  std::size_t count(Severity severity) const;
  std::size_t items() const;
};

/// For people: `FILE:LINE:COLUMN: severity: text [rule]`, and with `excerpts` the line it is about.
void tellText(std::ostream& out, const Result& result, const Style& style, bool excerpts);

/// One document of JSON for all maps.
void tellJson(std::ostream& out, const std::vector<Result>& results);

/// The rules, as they are listed and explained.
std::vector<findings::RuleText> textsOf(const std::vector<const Rule*>& rules);

/// What all formats but those two are made of, with the rules that were looked at.
findings::Report reportOf(const std::vector<Result>& results, const std::vector<const Rule*>& rules,
                          findings::FailOn failOn);

} // namespace cli::check
