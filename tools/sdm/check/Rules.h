// The rules by subject, and what they share.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Finding.h"
#include "map/ItemText.h"

namespace cli::check
{

/// The file as a whole.
const std::vector<Rule>& fileRules();
/// Lines that are cut or skipped, or that have too many commas.
const std::vector<Rule>& lineRules();
/// Comments, headings and quotes, which an item map does not have.
const std::vector<Rule>& notationRules();
/// Bytes and blanks in the columns.
const std::vector<Rule>& textRules();
/// Names that the messages to the database cannot carry.
const std::vector<Rule>& nameRules();
/// Items that get into each other's way.
const std::vector<Rule>& identityRules();
/// Items, groups and encryption without effect.
const std::vector<Rule>& effectRules();
/// User data that cannot be reset or reloaded.
const std::vector<Rule>& userDataRules();
/// Defaults and alternative defaults.
const std::vector<Rule>& valueRules();
/// What a service makes of its map.
const std::vector<Rule>& serviceRules();

/// The items that somebody wrote, in the order of the file: not those that a cut line left over.
std::vector<ItemText> itemsOf(const MapText& map);

/// The piece without blanks at its ends; empty, and at its begin, when there is nothing else.
Span trimmed(const MapText& map, Span place);

/// The piece without the carriage return that a line may end in: that is a finding of its own.
Span withoutReturn(const MapText& map, Span place);

/// "line 12".
std::string lineOf(const MapLine& line);

/// A line that was read whole and that nothing else is said about: not cut, not the rest of a cut one, without NUL
/// bytes.
bool isOrdinary(const MapText& map, const MapLine& line);

/// Whether its author meant the text for a comment: blanks, then "#", ";" or "//".
bool beginsComment(std::string_view text);

/// Whether a quote opens the column and none closes it.
bool isOpenQuote(std::string_view text);

/// Whether the line shows that its columns are not where they were meant: text behind the twelfth, or a quote that a
/// comma cut open.
bool hasShiftedColumns(const ItemText& item);

/// The file is in UTF-16: no other rule has anything to say about it.
bool isUtf16(const MapText& map);

/// Whether expat takes it for the name of an element, as it stands.
bool isXmlName(std::string_view text);

} // namespace cli::check
