// Events are compared in order; registrations and what the platform logs of its own are left out.
#include "Comparison.h"

#include "base/JsonText.h"

namespace cli::replay
{
namespace
{

constexpr std::size_t contextLines = 3;

std::string lineOf(const transcript::Event& event)
{
  return jsonText(event.content);
}

std::size_t nextCompared(const transcript::Transcript& transcript, std::size_t from)
{
  while (from < transcript.events.size() && !isCompared(transcript.events[from]))
    ++from;
  return from;
}

Difference differenceAt(const transcript::Transcript& expected, std::size_t place)
{
  Difference found;
  found.event = place;
  const std::size_t last = expected.events.size();
  found.line = place < last ? expected.events[place].line : (last == 0 ? 1 : expected.events.back().line) + 1;
  for (std::size_t i = place > contextLines ? place - contextLines : 0; i < place; ++i)
    found.before.push_back(lineOf(expected.events[i]));
  for (std::size_t i = 0; i < place; ++i)
  {
    if (transcript::kindOf(expected.events[i]) == "command")
      found.command = expected.events[i].content["command"];
  }
  if (place < last)
    found.expected = lineOf(expected.events[place]);
  return found;
}

} // namespace

bool isCompared(const transcript::Event& event)
{
  const std::string kind = transcript::kindOf(event);
  if (kind != "log")
    return kind != "registered";
  const auto module = event.content.find("module");
  return module == event.content.end() || *module != "HostPlatform";
}

std::optional<Difference> compared(const transcript::Transcript& expected, const transcript::Transcript& actual,
                                   const std::string& atEnd)
{
  std::size_t e = nextCompared(expected, 0);
  std::size_t a = nextCompared(actual, 0);
  while (e < expected.events.size() && a < actual.events.size())
  {
    // Not as texts: the order of names in a line means nothing.
    if (nlohmann::json(expected.events[e].content) != nlohmann::json(actual.events[a].content))
      break;
    e = nextCompared(expected, e + 1);
    a = nextCompared(actual, a + 1);
  }
  if (e == expected.events.size() && a == actual.events.size() && atEnd.empty())
    return std::nullopt;
  Difference found = differenceAt(expected, e);
  found.actual = a < actual.events.size() ? lineOf(actual.events[a]) : atEnd;
  return found;
}

} // namespace cli::replay
