// What the reply parser knows between two of expat's callbacks, and from one reply to the next.
#pragma once

#include <exception>
#include <string>

#include "ImportCursor.h"

struct XML_ParserStruct;

namespace sdm
{

/// What one parse keeps at hand, so that a column asks for no memory and for its schema only once.
struct RunningParser
{
  XML_ParserStruct* expat = nullptr;
  /// The index in which the current schema was looked up, null before that; and where in the schema's items the reply
  /// is.
  const DASImportMap* map = nullptr;
  ImportCursor cursor;
  /// What its setter finds and leaves as its remark.
  std::string error;
};

/// Schema, index column, index value and kind carry over from one reply to the next until a reply names its
/// own: a reply without a kind is judged by that of the reply before it, which is meant.
struct DASReplyState
{
  /// The `name` of the last schema element that had one.
  std::string schema;
  /// That schema's index column, empty for a schema without rows.
  std::string indexColumn;
  /// The current row.
  std::string indexValue;
  /// Character data since the last start of an element.
  std::string characters;
  /// The last ReasonForMessage.
  std::string kind;
  /// Collect mode: the column texts, joined by commas.
  std::string values;

  bool importMode = false;
  bool columnSeen = false;

  /// The running parser, null between parses; and what a callback threw meanwhile.
  RunningParser* parser = nullptr;
  std::exception_ptr failure;
};

} // namespace sdm
