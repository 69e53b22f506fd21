// Lines of generated code, none of which is longer than the format that goes with them allows.
#pragma once

#include <cstddef>
#include <string>

namespace cli::skeleton
{

/// How long lines of generated code may be, in columns of a terminal.
constexpr std::size_t longestLine = 120;

/// Code whose longer lines are broken behind commas and within literals, which then stand in pieces, and kept from the
/// formatter, which has ways of its own. Comments are broken anywhere. The lines that fit stay as they are.
std::string foldedCode(const std::string& code);

} // namespace cli::skeleton
