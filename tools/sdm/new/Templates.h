// The files of a skeleton before anything is filled in.
#pragma once

#include <map>
#include <string>

namespace cli::skeleton
{

/// Texts by their paths in the skeleton; `.clang-format` stands there without its dot.
const std::map<std::string, std::string>& templates();

} // namespace cli::skeleton
