// Changes that somebody has looked at and accepted, in a file.
#pragma once

#include <string>
#include <vector>

#include "Comparison.h"

namespace cli::diff
{

/// The changes that the file lists. Throws `StartError` when it cannot be read or is no such file.
std::vector<Acceptance> acceptedIn(const std::string& path);

/// The same, and none when there is no such file.
std::vector<Acceptance> acceptedInAny(const std::string& path);

/// Writes all changes of the comparison, with the reasons that `known` has for them. Throws `StartError` when the file
/// cannot be written; then it is as it was.
void writeAccepted(const std::string& path, const Comparison& comparison, const std::vector<Acceptance>& known);

/// Marks the changes that are listed; what is listed in vain goes to the stale ones.
void passOver(Comparison& comparison, const std::vector<Acceptance>& accepted);

} // namespace cli::diff
