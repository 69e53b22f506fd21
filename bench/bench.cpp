// Times every operation beside its floors: on maps of 100 to 100,000 items where it handles all of them.
//
// usage: bench_... [options of Google Benchmark]
// SDM_BENCH_ITEMS limits the size of the maps, SDM_BENCH_FOLDER is where the measurements' files lie (default: here).
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

#include <benchmark/benchmark.h>

#include "Scenarios.h"

namespace
{

void measure(benchmark::State& state, const bench::Scenario& scenario)
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

} // namespace

int main(int argc, char** argv)
{
  benchmark::Initialize(&argc, argv);
  const char* folder = std::getenv("SDM_BENCH_FOLDER");
  if (folder != nullptr && chdir(folder) != 0)
    throw std::runtime_error(std::string(folder) + " is no folder to work in");
  const char* most = std::getenv("SDM_BENCH_ITEMS");
  const std::int64_t largest = most != nullptr ? std::atoll(most) : 100000;
  for (const bench::Scenario& scenario : bench::allScenarios())
  {
    auto* registered = benchmark::RegisterBenchmark(scenario.name.c_str(),
                                                    [scenario](benchmark::State& state) { measure(state, scenario); });
    for (std::int64_t items = 100; scenario.scales && items <= largest; items *= 10)
      registered->Arg(items);
  }
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
