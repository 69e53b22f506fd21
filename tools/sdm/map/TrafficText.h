// Requests and replies of the database, laid out to be read.
#pragma once

#include <string>

#include "Masking.h"

namespace cli
{

/// The XML text with an element a line and secrets masked, each line after `margin`. A text that is no XML is
/// not shown, only described: nobody knows what is in it. Elements below the 32nd level are left out, which is said.
std::string indented(const std::string& xml, const Masking& masking, const std::string& margin);

/// The kind of a request or a reply, such as "update_response"; empty when it has none, and when it is no XML.
std::string messageKind(const std::string& xml);

/// The schema that a request is about; empty when it names none.
std::string requestedSchema(const std::string& request);

/// The reason in a reply of a failing kind, made safe to print; a stand-in when there is none.
std::string replyError(const std::string& reply);

} // namespace cli
