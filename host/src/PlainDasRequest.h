// Requests in the plain form in which they are mostly written, read without a parser, which would take three quarters
// of what such a request costs.
#pragma once

#include <string_view>

#include "DasRequest.h"

namespace host
{
/// Reads a request that has no white space between its elements, no markup but elements, the five named references and
/// the usual declaration, names of ASCII, few cells in an entry, and nothing wrong with it. False for any other, which
/// may be as good: the parser has to judge it; `request` then holds anything.
bool readPlainDasRequest(std::string_view text, DasRequest& request);
} // namespace host
