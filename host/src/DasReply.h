// The replies of the Data Access Service, compact to the byte: readers take all text since a column's start as its
// value, so there is no white space between elements.
#pragma once

#include <string>

namespace host
{
/// Writes the answer to a read, one row after the other.
class DasReadReply
{
public:
  explicit DasReadReply(const std::string& schema);

  /// What follows belongs to one row, until `endEntry`. Columns without these stand directly under the schema.
  void beginEntry();
  void endEntry();

  /// Throws `Refusal` when XML cannot carry its name or its value; the log tells which column it was.
  void column(const std::string& name, bool isElementName, const std::string& value);

  /// The whole reply; nothing can be added any more.
  [[nodiscard]] std::string finished();

private:
  std::string text;
};

[[nodiscard]] std::string dasUpdateReply(const std::string& schema);

/// A reply of a kind that readers take for a failure.
[[nodiscard]] std::string dasErrorReply(const std::string& schema, const std::string& why);
} // namespace host
