// Which texts survive a trip to the database and back.
#pragma once

#include <string>

namespace commsservice
{

/// Whether the text is well-formed UTF-8 of characters that XML can carry; requests and replies are XML.
bool isStorableText(const std::string& text);

} // namespace commsservice
