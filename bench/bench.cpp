// Times every operation beside its floors: on maps of 100 to 100,000 items where it handles all of them.
//
// usage: bench_... [options of Google Benchmark]
// SDM_BENCH_ITEMS limits the size of the maps, SDM_BENCH_FOLDER is where the measurements' files lie (default: here).
// What fails is reported with its operation, and ends in failure; an abort tells during which operation it came.
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

#include <benchmark/benchmark.h>

#include "Scenarios.h"

namespace
{

/// For the handler of an abort, which may neither allocate nor wait.
std::array<char, 100> running{};
bool failed = false;

void tellOperation(int signal)
{
  for (const char* text : {"bench: aborted during ", static_cast<const char*>(running.data()), "\n"})
    static_cast<void>(!write(STDERR_FILENO, text, std::strlen(text)));
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

void measureThrowing(benchmark::State& state, const bench::Scenario& scenario)
{
  bench::Shape shape = scenario.shape;
  if (scenario.scales)
    shape.items = static_cast<std::size_t>(state.range(0));
  const bench::Run run = scenario.make(shape);
  for ([[maybe_unused]] const auto iteration : state)
  {
    if (run.prepare)
    {
      state.PauseTiming();
      run.prepare();
      state.ResumeTiming();
    }
    run.run();
  }
  const auto handled = state.iterations() * static_cast<std::int64_t>(run.units);
  state.SetItemsProcessed(handled);
  state.counters["units"] = static_cast<double>(run.units);
}

void measure(benchmark::State& state, const bench::Scenario& scenario)
{
  std::snprintf(running.data(), running.size(), "%s", scenario.name.c_str());
  try
  {
    measureThrowing(state, scenario);
  }
  catch (const std::exception& error)
  {
    failed = true;
    state.SkipWithError(error.what());
    std::fprintf(stderr, "bench: %s: %s\n", scenario.name.c_str(), error.what());
  }
}

} // namespace

int main(int argc, char** argv)
{
  std::signal(SIGABRT, tellOperation);
  benchmark::Initialize(&argc, argv);
  const char* folder = std::getenv("SDM_BENCH_FOLDER");
  if (folder != nullptr && chdir(folder) != 0)
  {
    std::fprintf(stderr, "bench: %s is no folder to work in\n", folder);
    return EXIT_FAILURE;
  }
  const char* most = std::getenv("SDM_BENCH_ITEMS");
  const std::int64_t largest = most != nullptr ? std::atoll(most) : 100000;
  for (const bench::Scenario& scenario : bench::allScenarios())
  {
    auto* registered = benchmark::RegisterBenchmark(scenario.name.c_str(),
                                                    [scenario](benchmark::State& state) { measure(state, scenario); });
    for (std::int64_t items = 100; scenario.scales && items <= largest; items *= 10)
      registered->Arg(items);
  }
  if (benchmark::RunSpecifiedBenchmarks() == 0)
    failed = true; // Nothing is called as the filter wants it.
  return failed ? EXIT_FAILURE : EXIT_SUCCESS;
}
