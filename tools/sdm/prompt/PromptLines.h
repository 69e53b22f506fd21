// Decides which typed lines may be kept, and asks for secrets without showing them.
#pragma once

#include <string>

#include "LineReader.h"
#include "Session.h"

namespace cli
{

/// Whether a secret is named, wherever that is: a line that only might hold a value of it is held back, too.
bool holdsSecret(const std::string& line, const Masking& masking);

/// Whether every word that should name an item does, so that no misspelt name hides a secret, and no word is one.
bool mayBeKept(const std::string& line, const Session& session);

/// `set ID` with a secret at the end asks for its value, so that it need not be typed in the open. False when nobody
/// answered.
bool askForSecret(LineReader& reader, Session& session, std::string& line);

} // namespace cli
