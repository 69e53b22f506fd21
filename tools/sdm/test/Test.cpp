// Options and help, and the form of the results.
#include "Test.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>
#include <map>
#include <memory>

#include "Suite.h"
#include "base/OneOf.h"
#include "base/Progress.h"
#include "base/Shown.h"
#include "base/StartError.h"
#include "replay/Replay.h"

namespace cli
{
namespace
{

using test::Result;

constexpr const char* footer =
    "Every file *.jsonl in the folder is a test: its commands run again as sdm replay does it. Behind the results\n"
    "stands how much of the service ran; what a start does does not count.\n\n"
    "Exit codes:\n"
    "  0  all transcripts went as recorded\n"
    "  1  one did not or cannot be read or run, or output was lost\n"
    "  2  wrong usage of the command line\n"
    "  3  the folder cannot be read or has no transcript, or the device can be brought up for none\n";

enum class Format
{
  tap,
  junit,
  json
};

struct TestOptions
{
  std::string folder;
  replay::ReplaySettings settings;
  Format format = Format::tap;
  bool coverage = false;
};

void tellAll(const TestOptions& wanted, const test::Told& told)
{
  if (wanted.format == Format::tap)
    test::tellTapCoverage(std::cout, told.coverage, wanted.coverage);
  else if (wanted.format == Format::junit)
    test::tellJUnit(std::cout, told, wanted.coverage);
  else
    test::tellJson(std::cout, told);
}

ExitCode runTests(const TestOptions& wanted)
{
  const auto files = test::transcriptsIn(wanted.folder);
  const bool tap = wanted.format == Format::tap;
  Progress progress("running transcripts");
  test::Coverage coverage;
  test::Told told = {wanted.folder, {}, {}};
  if (tap)
    test::tellTapPlan(std::cout, files.size());
  for (const std::filesystem::path& file : files)
  {
    progress.tell(std::to_string(told.results.size() + 1) + " of " + std::to_string(files.size()) + ": " +
                  shown(file.filename().string()));
    told.results.push_back(test::runTranscript(file, wanted.settings, coverage, progress));
    progress.clear();
    if (tap)
      test::tellTap(std::cout, told.results.size(), told.results.back());
    std::cout.flush();
  }
  const std::string nothingRan = test::whyNothingRan(told.results);
  if (tap && !nothingRan.empty())
    std::cout << "Bail out! " << shown(nothingRan) << "\n";
  told.coverage = coverage.report();
  tellAll(wanted, told);
  if (!nothingRan.empty())
    throw StartError(nothingRan);
  const bool passed =
      std::all_of(told.results.begin(), told.results.end(), [](const Result& result) { return result.passed(); });
  return passed ? exitDone : exitRefused;
}

} // namespace

Action addTest(CLI::App& app)
{
  const auto wanted = std::make_shared<TestOptions>();
  static const std::map<std::string, Format> formats = {
      {"tap", Format::tap}, {"junit", Format::junit}, {"json", Format::json}};
  app.add_option("FOLDER", wanted->folder, "Folder of transcripts")->type_name("DIR")->required();
  replay::addReplayOptions(app, wanted->settings);
  app.add_option("--format", wanted->format, "How results are told: tap, junit, or json")
      ->type_name("RESULTS")
      ->transform(oneOf(formats))
      ->default_str("tap");
  app.add_flag_callback(
      "--json", [wanted] { wanted->format = Format::json; }, "The same as --format json");
  app.add_flag("--coverage", wanted->coverage, "List the setters, getters, groups and items that never ran");
  app.footer(footer);
  return [wanted] { return runTests(*wanted); };
}

} // namespace cli
