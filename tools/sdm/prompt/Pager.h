// Shows long output page by page.
#pragma once

#include <string>

namespace cli
{

/// Hands the text to the program that PAGER names, without one to `less`, and waits for its end. False when there is no
/// such program, or PAGER is empty: nothing was shown then. A reader that leaves early is no failure.
bool page(const std::string& text);

} // namespace cli
