// What stands in a request in place of a value that could not be encrypted.
//
// Who writes requests does not learn that encryption failed, so the text itself has to tell the Data Access Service. It
// is an element: values come with their markup escaped, so none that anybody sets can be taken for it.
#pragma once

#include <string>

namespace host
{
/// The element's name.
extern const char* const notEncryptedElement;

/// The element with the reason in it, which names no value.
std::string notEncrypted(const std::string& why);
} // namespace host
