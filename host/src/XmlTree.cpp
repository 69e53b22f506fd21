// The parser's calls build the tree. Depth is limited and a document type refused, so a hostile text stays harmless.
#include "XmlTree.h"

#include <expat.h>

#include <algorithm>
#include <cstdint>
#include <exception>
#include <limits>
#include <memory>
#include <random>

namespace host
{
namespace
{
constexpr std::size_t deepestLevel = 8;

/// Drawn once a process, as a parser without one draws its own each time: it keeps whoever sends a document from
/// choosing names that all fall into one place of the parser's tables. Never 0, which means none.
unsigned long hashSalt()
{
  static const unsigned long salt = []
  {
    std::random_device source;
    const std::uint64_t drawn = (std::uint64_t{source()} << 32U) | source();
    return std::max(static_cast<unsigned long>(drawn), 1UL);
  }();
  return salt;
}

/// Builds the tree from the parser's calls. Nothing may be thrown through the parser, so a failure is kept, stops the
/// parser and is thrown afterwards.
class TreeBuilder
{
public:
  explicit TreeBuilder(XML_Parser itsParser) : parser(itsParser)
  {
    XML_SetUserData(parser, this);
    XML_SetElementHandler(parser, &TreeBuilder::onStart, &TreeBuilder::onEnd);
    XML_SetCharacterDataHandler(parser, &TreeBuilder::onText);
    XML_SetStartDoctypeDeclHandler(parser, &TreeBuilder::onDoctype);
  }

  XmlNode root;
  std::exception_ptr failure;

private:
  template <typename Action>
  static void contained(void* userData, Action action)
  {
    auto& self = *static_cast<TreeBuilder*>(userData);
    if (self.failure)
      return;
    try
    {
      action(self);
    }
    catch (...)
    {
      self.failure = std::current_exception();
      XML_StopParser(self.parser, XML_FALSE);
    }
  }

  static void onStart(void* userData, const char* name, const char** attributes)
  {
    contained(userData,
              [&](TreeBuilder& self)
              {
                if (self.open.size() == deepestLevel)
                  throw XmlError("elements are nested too deep");
                XmlNode& node = self.open.emplace_back();
                node.name = name;
                for (; *attributes != nullptr; attributes += 2)
                  node.attributes.emplace_back(attributes[0], attributes[1]);
              });
  }

  static void onText(void* userData, const char* text, int length)
  {
    contained(userData,
              [&](TreeBuilder& self) { self.open.back().text.append(text, static_cast<std::size_t>(length)); });
  }

  static void onEnd(void* userData, const char*)
  {
    contained(userData,
              [](TreeBuilder& self)
              {
                XmlNode node = std::move(self.open.back());
                self.open.pop_back();
                if (self.open.empty())
                  self.root = std::move(node);
                else
                  self.open.back().children.push_back(std::move(node));
              });
  }

  static void onDoctype(void* userData, const char*, const char*, const char*, int)
  {
    contained(userData, [](TreeBuilder&) { throw XmlError("a document type declaration is not taken"); });
  }

  XML_Parser parser;
  std::vector<XmlNode> open;
};
} // namespace

XmlNode parseXml(const char* text, std::size_t length)
{
  if (text == nullptr || length > static_cast<std::size_t>(std::numeric_limits<int>::max()))
    throw XmlError("there is no text or too much of it");
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(XML_ParserCreate(nullptr), &XML_ParserFree);
  if (!parser)
    throw std::bad_alloc();
  XML_SetHashSalt(parser.get(), hashSalt());
  TreeBuilder builder(parser.get());
  const XML_Status status = XML_Parse(parser.get(), text, static_cast<int>(length), XML_TRUE);
  if (builder.failure)
    std::rethrow_exception(builder.failure);
  if (status != XML_STATUS_OK)
    throw XmlError(std::string(XML_ErrorString(XML_GetErrorCode(parser.get()))) + " at line " +
                   std::to_string(XML_GetCurrentLineNumber(parser.get())) + ", column " +
                   std::to_string(XML_GetCurrentColumnNumber(parser.get()) + 1));
  return std::move(builder.root);
}
} // namespace host
