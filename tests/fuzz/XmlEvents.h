// What a document says, read by two other readers than the library: to compare with what the library makes of it.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace fuzz
{

struct XmlEvent
{
  enum class Kind
  {
    start,
    text,
    end
  };

  Kind kind;
  /// The element's name, or the text; texts that follow each other are one.
  std::string text;
  /// Of a start: the attribute "name".
  std::optional<std::string> nameAttribute;
};

struct XmlReading
{
  bool wellFormed = false;
  /// Up to the error of a document that is not well-formed.
  std::vector<XmlEvent> events;
};

/// Judges any text. Of a well-formed one in UTF-8 without a document type, the events are those of a reader of another
/// make, which takes less care of what is well-formed.
XmlReading readXml(const std::string& text);

} // namespace fuzz
