// Each event is checked against the shape of its kind; the first bad line is named.
#include "Transcript.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "base/JsonText.h"
#include "base/Shown.h"
#include "base/StartError.h"
#include "base/WholeFile.h"

namespace cli::transcript
{
namespace
{

using Json = nlohmann::ordered_json;

/// What an event has to hold to be one.
struct Shape
{
  std::string_view kind;
  std::string_view other;
  Json::value_t type;
};

constexpr auto text = Json::value_t::string;
constexpr auto truth = Json::value_t::boolean;
constexpr auto none = Json::value_t::null;
constexpr auto object = Json::value_t::object;

constexpr std::array<Shape, 12> shapes = {{{"command", "", none},
                                           {"op", "", none},
                                           {"result", "", none},
                                           {"request", "", none},
                                           {"reply", "", none},
                                           {"setter", "accepted", truth},
                                           {"getter", "value", text},
                                           {"validator", "group", text},
                                           {"log", "text", text},
                                           {"store", "", none},
                                           {"securitylog", "failed", truth},
                                           {"registered", "", object}}};

class Reader
{
public:
  explicit Reader(const std::filesystem::path& file)
  {
    made.file = file;
    try
    {
      bytes = wholeFile(file);
    }
    catch (const Unusable& error)
    {
      fail(error.what());
    }
  }

  Transcript read(bool complete)
  {
    readHeader();
    for (Event event; next(event);)
    {
      if (made.complete)
        failAt("nothing may stand behind the end of the run");
      checkEvent(event);
      made.events.push_back(event);
    }
    if (complete && !made.complete)
      failAt("the end is missing, so the recording was cut off");
    return std::move(made);
  }

private:
  [[noreturn]] void fail(const std::string& why) const
  {
    throw StartError("the transcript " + made.file.string() + " cannot be read: " + why);
  }

  [[noreturn]] void failAt(const std::string& why) const
  {
    throw StartError("the transcript " + made.file.string() + ", line " + std::to_string(line) + ": " + why);
  }

  bool next(Event& event)
  {
    if (done == bytes.size())
      return false;
    ++line;
    const std::size_t end = bytes.find('\n', done);
    // A line without its end is what a full disk leaves.
    if (end == std::string::npos)
      failAt("the line is cut off");
    try
    {
      event.content = jsonOf(bytes.substr(done, end - done));
    }
    catch (const JsonError& error)
    {
      failAt(error.what());
    }
    done = end + 1;
    event.line = line;
    if (!event.content.is_object() || event.content.empty())
      failAt("this is no event, that is an object of JSON");
    return true;
  }

  void readHeader()
  {
    Event first;
    if (!next(first))
      fail("it is empty");
    const Json& content = first.content;
    if (!content.contains("transcript") || !content["transcript"].is_number_unsigned())
      failAt("this is no header of a transcript");
    if (content["transcript"] != 1)
      failAt("the transcript has form " + content["transcript"].dump() + ", this program knows form 1");
    made.header.version = textIn(content, "version");
    made.header.service = textIn(content, "service");
    made.header.map = textIn(content, "map");
    made.header.interfaces = numberIn(content, "interfaces", 64);
    made.header.logLevel = static_cast<int>(numberIn(content, "logLevel", 6));
  }

  std::string textIn(const Json& content, const char* name) const
  {
    if (!content.contains(name) || !content[name].is_string())
      failAt(std::string("the header has no text \"") + name + "\"");
    return content[name];
  }

  std::uint32_t numberIn(const Json& content, const char* name, std::uint32_t most) const
  {
    if (!content.contains(name) || !content[name].is_number_unsigned() || content[name] > most)
      failAt(std::string("the header has no number \"") + name + "\" from 0 to " + std::to_string(most));
    return content[name];
  }

  void checkEvent(const Event& event)
  {
    const std::string kind = kindOf(event);
    const auto* const shape =
        std::find_if(shapes.begin(), shapes.end(), [&](const Shape& each) { return each.kind == kind; });
    if (shape == shapes.end())
      failAt("there are no events of the kind " + shownValue(kind));
    const std::string other(shape->other);
    if (!other.empty() && (!event.content.contains(other) || event.content[other].type() != shape->type))
      failAt("an event of the kind " + kind + " needs \"" + other + "\"");
    const Json& first = event.content.front();
    const bool isNamed = kind != "log" && kind != "registered" && kind != "reply";
    if (isNamed && !first.is_string())
      failAt("an event of the kind " + kind + " needs a text");
    if (kind == "registered" && !first.is_object())
      failAt("an event of the kind registered needs an object");
    if (kind == "command")
      ++commands;
    if (kind == "result" && first == "run")
      checkEnd(event.content);
  }

  void checkEnd(const Json& content)
  {
    if (!content.contains("commands") || content["commands"] != commands)
      failAt("the number of commands is not that of the transcript, so a part of it is missing");
    made.complete = true;
  }

  std::string bytes;
  std::size_t done = 0;
  Transcript made;
  std::size_t line = 0;
  std::size_t commands = 0;
};

} // namespace

std::string kindOf(const Event& event)
{
  return event.content.empty() ? "" : event.content.begin().key();
}

Transcript readTranscript(const std::filesystem::path& file, bool complete)
{
  return Reader(file).read(complete);
}

} // namespace cli::transcript
