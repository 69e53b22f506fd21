// Takes piece by piece what the manager writes; the first piece that is another one leaves the request to the parser.
#include "PlainDasRequest.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>

#include "XmlText.h"

namespace host
{
namespace
{
/// In an entry each cell is compared with the others.
constexpr std::size_t mostCellsOfAnEntry = 8;

struct NamedReference
{
  std::string_view reference;
  char character;
};

constexpr std::array<NamedReference, 5> namedReferences = {
    {{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}}};

/// The text that stands for `written`; nothing when it takes a parser to tell.
std::optional<std::string> meaningOf(std::string_view written)
{
  // A parser joins line ends; and "]]>" must not stand in a text.
  if (written.find_first_of("\r>") != std::string_view::npos || !isXmlText(written))
    return std::nullopt;
  std::string meaning;
  meaning.reserve(written.size());
  for (std::size_t begin = written.find('&'); begin != std::string_view::npos; begin = written.find('&'))
  {
    meaning.append(written, 0, begin);
    written.remove_prefix(begin);
    const auto* const named =
        std::find_if(namedReferences.begin(), namedReferences.end(),
                     [written](const auto& one) { return written.substr(0, one.reference.size()) == one.reference; });
    if (named == namedReferences.end())
      return std::nullopt;
    meaning += named->character;
    written.remove_prefix(named->reference.size());
  }
  return std::move(meaning.append(written));
}

/// Takes the pieces of a text from its front; each call that does not find its piece leaves the text as it was, but for
/// cells, behind which nothing else is tried.
class Pieces
{
public:
  explicit Pieces(std::string_view text) : left(text)
  {
  }

  bool take(std::string_view piece)
  {
    if (left.substr(0, piece.size()) != piece)
      return false;
    left.remove_prefix(piece.size());
    return true;
  }

  /// All before `end`, and that too.
  std::optional<std::string_view> takeUntil(char end)
  {
    const std::size_t length = left.find(end);
    if (length == std::string_view::npos)
      return std::nullopt;
    const std::string_view taken = left.substr(0, length);
    left.remove_prefix(length + 1);
    return taken;
  }

  /// An element that holds nothing but text, and is none of the messages' own.
  std::optional<DasCell> takeCell()
  {
    const auto name = take("<") ? takeUntil('>') : std::nullopt;
    if (!name || !isPlainName(*name))
      return std::nullopt;
    const auto written = takeUntil('<');
    if (!written || !take("/") || !take(*name) || !take(">"))
      return std::nullopt;
    std::optional<std::string> value = meaningOf(*written);
    if (!value || isMessageElement(*name))
      return std::nullopt;
    return DasCell{std::string(*name), *std::move(value)};
  }

  bool isAtEnd() const
  {
    return left.empty();
  }

private:
  std::string_view left;
};

bool takeHead(Pieces& pieces, DasRequest& request)
{
  pieces.take(R"(<?xml version="1.0" encoding="utf-8"?>)");
  if (!pieces.take("<Schema name=\""))
    return false;
  const auto name = pieces.takeUntil('"');
  // In an attribute's value a parser makes blanks of other white space.
  if (!name || name->find_first_of("<&\t\n\r") != std::string_view::npos || !isXmlText(*name))
    return false;
  request.schema = *name;
  if (!pieces.take("><ReasonForMessage>"))
    return false;
  const bool isRead = pieces.take("read");
  request.kind = isRead ? DasRequest::Kind::read : DasRequest::Kind::update;
  return (isRead || pieces.take("update")) && pieces.take("_request</ReasonForMessage>");
}

/// Behind its beginning. Empty when it is not plain, or wrong.
std::vector<DasCell> takeEntry(Pieces& pieces)
{
  std::vector<DasCell> cells;
  while (!pieces.take("</Entry>"))
  {
    std::optional<DasCell> cell = cells.size() < mostCellsOfAnEntry ? pieces.takeCell() : std::nullopt;
    if (!cell ||
        std::any_of(cells.begin(), cells.end(), [&cell](const DasCell& other) { return other.column == cell->column; }))
      return {};
    cells.push_back(*std::move(cell));
  }
  return cells;
}

bool takeSelection(Pieces& pieces, DasRequest& request)
{
  if (!pieces.take("<ResultCols>"))
    return true;
  const auto column = pieces.takeUntil('<');
  request.resultColumn = column ? meaningOf(*column) : std::nullopt;
  if (!request.resultColumn || !pieces.take("/ResultCols>"))
    return false;
  if (!pieces.take("<Entry>"))
    return true;
  std::vector<DasCell> cells = takeEntry(pieces);
  if (cells.size() != 1)
    return false;
  request.row = std::move(cells.front());
  return true;
}

bool takeChange(Pieces& pieces, DasRequest& request)
{
  if (pieces.take("<Entry>"))
  {
    request.entries.push_back(takeEntry(pieces));
    return request.entries.back().size() > 1;
  }
  std::optional<DasCell> cell = pieces.takeCell();
  if (!cell)
    return false;
  request.cells.push_back(*std::move(cell));
  return true;
}

/// At least one, and the end of the request.
bool takeChanges(Pieces& pieces, DasRequest& request)
{
  bool plain = takeChange(pieces, request);
  while (plain && !pieces.take("</Schema>"))
    plain = takeChange(pieces, request);
  return plain;
}
} // namespace

bool readPlainDasRequest(std::string_view text, DasRequest& request)
{
  Pieces pieces(text);
  if (!takeHead(pieces, request))
    return false;
  const bool plain = request.kind == DasRequest::Kind::read ? takeSelection(pieces, request) && pieces.take("</Schema>")
                                                            : takeChanges(pieces, request);
  return plain && pieces.isAtEnd();
}
} // namespace host
