// Runs the transcript again until it agrees or no other stand-ins are left, and keeps the run that came furthest.
#include "Verdict.h"

#include <algorithm>
#include <utility>

#include "base/Shown.h"

namespace cli::replay
{
namespace
{

/// A transcript with many secrets may need a run for each of them, and a service that changed must not need them all.
constexpr std::size_t mostRuns = 40;

std::vector<std::string> notesOn(const transcript::Header& then, const transcript::Header& now)
{
  std::vector<std::string> notes;
  const auto note = [&](const char* what, const std::string& was, const std::string& is)
  {
    if (was != is)
      notes.push_back(std::string("recorded with ") + what + " " + shown(was) + ", this is " + shown(is));
  };
  note("the service", then.service, now.service);
  if (!notes.empty())
    notes.back() += "; name another one with --service";
  note("the item map", then.map, now.map);
  note("version", then.version, now.version);
  return notes;
}

} // namespace

Verdict replayAndCompare(const transcript::Transcript& transcript, const ReplaySettings& settings, Progress& progress)
{
  StandIns standIns(transcript);
  Verdict verdict;
  verdict.commands = static_cast<std::size_t>(std::count_if(transcript.events.begin(), transcript.events.end(),
                                                            [](const transcript::Event& event)
                                                            { return transcript::kindOf(event) == "command"; }));
  for (std::size_t attempt = 0; attempt < mostRuns; ++attempt)
  {
    ReplayedRun run = runAgain(transcript, standIns, settings, progress);
    auto difference = compared(transcript, run.actual, run.trouble);
    const std::size_t place = difference ? difference->event : transcript.events.size() + 1;
    // The run that came furthest tells most.
    if (attempt == 0 || !difference || place > verdict.difference->event)
    {
      verdict.difference = std::move(difference);
      verdict.actual = std::move(run.actual);
      verdict.map = run.map;
    }
    if (!verdict.difference || !standIns.next(place))
      break;
  }
  verdict.notes = notesOn(transcript.header, verdict.actual.header);
  return verdict;
}

} // namespace cli::replay
