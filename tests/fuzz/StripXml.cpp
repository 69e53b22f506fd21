// Cutting a value out of a reply without parsing it: both as a step of its own and through the import of one item. An
// input is the column's name, a line feed, and the reply.
#include <optional>
#include <stdexcept>

#include "Fuzz.h"
#include "ServiceDataManagerTestAccess.h"
#include "Services.h"
#include "Tokens.h"
#include "Trace.h"

namespace
{

const fuzz::Grammar& grammar()
{
  static const fuzz::Grammar rules = {
      {"input", {"{tag}\n{reply}"}},
      {"tag", {"C", "Port", "Name", "", "e", "C>"}},
      {"reply", {"<Schema name=\"{tag}\">{cell}</Schema>", "{cell}", "{cell}{tag}", "<{tag}", "{tag}"}},
      {"cell", {"<{tag}>v</{tag}>", "<{tag}>a&amp;b</{tag}>{cell}", "<{tag}/>", "<{tag}80>{tag}</{tag}80>"}},
  };
  return rules;
}

/// The text behind the tag's first occurrence and one more character, up to the next "<"; nothing where a tag at the
/// very end leaves no place for that character.
std::optional<std::string> expectedCut(const std::string& reply, const std::string& tag)
{
  for (std::size_t place = 0; place + tag.size() <= reply.size(); ++place)
  {
    if (std::string_view(reply).substr(place, tag.size()) != tag)
      continue;
    std::size_t begin = place + tag.size();
    if (begin++ == reply.size())
      return std::nullopt;
    std::string cut;
    for (; begin < reply.size() && reply[begin] != '<'; ++begin)
      cut += reply[begin];
    return cut;
  }
  return "";
}

template <typename Action>
std::optional<std::string> unlessOutOfRange(Action action)
{
  try
  {
    return action();
  }
  catch (const std::out_of_range&)
  {
    return std::nullopt;
  }
}

std::string shown(const std::optional<std::string>& text)
{
  return text ? "\"" + *text + "\"" : "out of range";
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  recording::reset();
  const std::string input = fuzz::textOf(data, size);
  const std::size_t lineEnd = input.find('\n');
  const std::string tag = input.substr(0, lineEnd);
  const std::string reply = lineEnd == std::string::npos ? "" : input.substr(lineEnd + 1);

  recording::Context context;
  recording::Das das;
  das.fallback = [&](const std::string&) { return reply; };
  context.services = {{"DataAccessServiceIfc", &das}};
  ServiceDataManager manager;
  manager.setup(&context, nullptr, "fuzzed", nullptr);
  ServiceDataManagerTestAccess access(manager);
  access.addDataItem("id", "S", tag, "", "", "", "", "", "", "");
  access.buildIndexes();

  const auto cut = unlessOutOfRange(
      [&]
      {
        std::string text = reply;
        access.stripXml(text, tag);
        return text;
      });
  const auto imported = unlessOutOfRange(
      [&]
      {
        std::string value = "before";
        manager.importItemFromDAS("id", value);
        return value;
      });
  const auto expected = expectedCut(reply, tag);
  fuzz::requireEqual(shown(cut), shown(expected), "the value is cut out of the reply");
  fuzz::requireEqual(shown(imported), shown(expected), "an item's import answers the value that was cut out");
  return 0;
}

std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned int seed)
{
  return fuzz::mutate(grammar(), "<>\n", data, size, maxSize, seed);
}
