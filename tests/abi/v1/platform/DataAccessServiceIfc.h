// The Data Access Service (DAS): the device's database, reached by one XML text in and one out.
#pragma once

#include <cstddef>
#include <string>

#include "Executable.h"
#include "PlatformExport.h"

/// Answers read and update requests over the device's configuration tables.
class SDM_PLATFORM_EXPORT DataAccessServiceIfc : public Executable
{
public:
  ~DataAccessServiceIfc() override = default;

  /// Sends one request and waits for its reply.
  ///
  /// The library promises: `request` points at `length` bytes, never null, with a terminator behind them that
  /// `length` does not count; the bytes are the library's and valid only during the call. They are meant as UTF-8
  /// XML, but names, index values and the defaults of a reset stand in them as the item map gives them: a request
  /// may be malformed, and is to be refused then.
  ///
  /// The platform must: return the whole reply as UTF-8 XML. A reply's `ReasonForMessage` is
  /// "read_response" or "update_response" when the request was carried out; any other text, a malformed
  /// reply or an empty one counts as failure. In a row the index column comes before the other columns.
  /// Behind a column's text there must be no white space outside the elements, since readers answer with
  /// all the text since the column's start.
  ///
  /// Called with the manager's lock held; it blocks the caller and may throw.
  virtual std::string sendRequest(const char* request, size_t length) = 0;
};
