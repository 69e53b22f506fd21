// A whole XML text as a tree of elements.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace host
{
/// An element: its own text is joined, whatever elements stand between its pieces.
struct XmlNode
{
  std::string name;
  std::vector<std::pair<std::string, std::string>> attributes;
  std::string text;
  std::vector<XmlNode> children;
};

/// The text is no document this reader takes; `what()` says why and where, without quoting it.
class XmlError : public std::runtime_error
{
public:
  using std::runtime_error::runtime_error;
};

/// Reads a document and returns its root. Throws `XmlError` for one that is not well-formed, declares a document type
/// (nobody here needs entities of his own, and they can be made to explode) or is nested deeper than messages are.
XmlNode parseXml(const char* text, std::size_t length);
} // namespace host
