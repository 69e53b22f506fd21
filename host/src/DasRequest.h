// A request to the Data Access Service, read out of its XML text.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host
{
struct DasCell
{
  std::string column;
  std::string value;
};

/// What a request asks for, as far as its own text tells. Whether its schema and columns exist is for others to say.
struct DasRequest
{
  enum class Kind
  {
    read,
    update
  };

  std::string schema;
  Kind kind = Kind::read;
  /// A read's only column; none for the whole schema.
  std::optional<std::string> resultColumn;
  /// A read's row, as index column and its value; none for all rows.
  std::optional<DasCell> row;
  /// An update's cells outside rows, in order.
  std::vector<DasCell> cells;
  /// An update's rows, in order; the first cell of each is the index column.
  std::vector<std::vector<DasCell>> entries;
};

/// Reads a request into `request`. Throws `Refusal` for a text that is not a request; the schema's name is filled in
/// all the same when the text got as far as that.
void readDasRequest(const char* text, std::size_t length, DasRequest& request);

/// True for the names that have a meaning of their own in messages and so cannot be columns.
bool isMessageElement(std::string_view name);
} // namespace host
