// Reads the two maps, compares them, and tells what came of it.
#include "Diff.h"

#include <iostream>
#include <unistd.h>

#include "Accepted.h"
#include "Comparison.h"
#include "GitFile.h"
#include "base/Progress.h"
#include "base/Shown.h"
#include "base/StartError.h"
#include "base/Style.h"
#include "map/MapFile.h"

namespace cli::diff
{
namespace
{

/// What git names in the place of a file that one side does not have.
constexpr const char* noFile = "/dev/null";

/// Where the two maps come from, and what they are called.
struct Sources
{
  std::string oldPath;
  std::string newPath;
  std::string oldName;
  std::string newName;
};

Sources sourcesOf(const DiffSettings& settings)
{
  const std::vector<std::string>& maps = settings.maps;
  if (!settings.against.empty())
    return {maps[0], maps[0], settings.against + ":" + maps[0], maps[0]};
  // The path in the repository, and for each side a file, the id of its content, and its mode.
  if (settings.forGit)
    return {maps[1], maps[4], "a/" + maps[0], "b/" + maps[maps.size() == 9 ? 7 : 0]};
  return {maps[0], maps[1], maps[0], maps[1]};
}

std::unique_ptr<MapText> mapOf(const std::string& name, std::string content)
{
  const bool empty = content.empty();
  auto map = std::make_unique<MapText>(name, std::move(content));
  for (const MapLine& line : map->lines())
  {
    if (line.kind == MapLine::Kind::item)
      return map;
  }
  if (!empty)
    throw FileError("the item map " + name +
                    " cannot be compared: it holds no item, that is no line with twelve columns separated by "
                    "commas");
  return map;
}

std::string contentOf(const std::string& path)
{
  return path == noFile ? "" : readMap(path);
}

Comparison compared(const DiffSettings& settings)
{
  const Sources sources = sourcesOf(settings);
  Comparison comparison;
  comparison.oldPath = sources.oldName;
  comparison.newPath = sources.newName;
  try
  {
    std::string oldContent =
        settings.against.empty() ? contentOf(sources.oldPath) : contentAt(settings.against, sources.oldPath);
    const Waiting waiting("comparing " + shown(sources.oldName) + " with " + shown(sources.newName));
    auto oldMap = mapOf(sources.oldName, std::move(oldContent));
    comparison.newMap = mapOf(sources.newName, contentOf(sources.newPath));
    comparison.oldMap = std::move(oldMap);
    for (Change& change : changesOf(*comparison.oldMap, *comparison.newMap))
    {
      const std::string name = fingerprint(change);
      comparison.changes.push_back({std::move(change), name, {}});
    }
  }
  catch (const FileError& error)
  {
    comparison.failure = error.what();
    comparison.newMap = nullptr;
  }
  findings::keepApart(comparison.changes, [](NamedChange& each) -> std::string& { return each.fingerprint; });
  return comparison;
}

void tellSummary(const Comparison& comparison, const Style& style)
{
  std::cout << counted(comparison.count(Severity::error), "error") << ", "
            << counted(comparison.count(Severity::warning), "warning") << ", "
            << counted(comparison.count(Severity::note), "note");
  if (comparison.accepted() > 0)
    std::cout << ", " << comparison.accepted() << " accepted";
  std::cout << "\n";
  if (comparison.changes.size() > comparison.accepted())
    std::cout << style.faint("`sdm diff --explain RULE` tells what is behind a rule.") << "\n";
}

void tell(const Comparison& comparison, const DiffSettings& settings)
{
  const Style style(wantsColours(STDOUT_FILENO));
  if (settings.format == findings::Format::json)
    tellJson(std::cout, comparison);
  else if (findings::isShared(settings.format))
    findings::tell(std::cout, reportOf(comparison, settings.failOn), settings.format);
  else
    tellText(std::cout, comparison, style);
  if (settings.format == findings::Format::text && isatty(STDOUT_FILENO) != 0 && comparison.failure.empty())
    tellSummary(comparison, style);
  std::cout.flush();
  if (!comparison.failure.empty())
    std::cerr << "sdm: " << shown(comparison.failure) << "\n";
}

/// What the list of accepted changes needs from its author.
void remindOf(const Comparison& comparison, const std::string& list)
{
  for (const Acceptance& entry : comparison.stale)
    std::cerr << "sdm: " << shown(list) << " accepts what is not changed any more: " << shownAgain(entry.text) << " ["
              << shown(entry.rule) << "]\n";
  std::size_t open = 0;
  for (const NamedChange& each : comparison.changes)
    open += each.accepted && each.accepted->empty() ? 1U : 0U;
  if (open > 0)
    std::cerr << "sdm: " << shown(list) << " accepts " << counted(open, "change") << " without a reason\n";
}

void useAccepted(Comparison& comparison, const DiffSettings& settings)
{
  if (!settings.accept.empty())
    passOver(comparison, acceptedIn(settings.accept));
  if (settings.writeAccept.empty())
    return remindOf(comparison, settings.accept);
  std::vector<Acceptance> known = acceptedInAny(settings.writeAccept);
  for (const NamedChange& each : comparison.changes)
  {
    if (each.accepted)
      known.push_back({each.fingerprint, each.change.rule->id, each.change.text, *each.accepted});
  }
  writeAccepted(settings.writeAccept, comparison, known);
  // What was written is accepted from now on.
  comparison.stale.clear();
  passOver(comparison, acceptedIn(settings.writeAccept));
  std::cerr << "sdm: " << shown(settings.writeAccept) << " accepts " << counted(comparison.changes.size(), "change")
            << "\n";
}

} // namespace

bool isFromGit(std::size_t arguments)
{
  // Two more for a file that got another name.
  return arguments == 7 || arguments == 9;
}

ExitCode compareMaps(const DiffSettings& settings)
{
  Comparison comparison = compared(settings);
  if (comparison.failure.empty())
    useAccepted(comparison, settings);
  tell(comparison, settings);
  if (!comparison.failure.empty())
    return exitCannot;
  for (const NamedChange& each : comparison.changes)
  {
    if (!each.accepted && counts(settings.failOn, each.change.rule->severity))
      return exitRefused;
  }
  return exitDone;
}

} // namespace cli::diff
