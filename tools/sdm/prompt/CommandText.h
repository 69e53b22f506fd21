// Commands as a transcript has them.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "map/ItemTable.h"
#include "map/Masking.h"
#include "transcript/Secrets.h"

namespace cli
{

/// Joins words into a line; `splitWords` of that line gives the same words.
std::string joinedWords(const std::vector<std::string>& words);

/// The line with the names of secrets in place of them. Beside the root id of a secret every word that is neither a
/// root id nor the value of one without secrets counts as one; so do the words with these numbers. What may be one gets
/// a name as well: the value of an item that nobody knows, whose id may be that of a secret with a typing error, and
/// the words of a command that nobody knows. Of a line that cannot be taken apart only that is kept.
std::string maskedCommand(const std::string& line, const ItemTable& items, const Masking& masking,
                          transcript::Secrets& secrets, const std::set<std::size_t>& secretWords);

} // namespace cli
