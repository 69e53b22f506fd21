// Runs operations once each between marks, for whoever counts instructions there: valgrind on this machine, the
// emulator's plugin for the device.
//
// usage: count [--warm] NAME[@ITEMS]
// What needs no preparing is run once for practice first; with --warm everything is, watched already, so that a
// simulated cache knows it. Prints how many items the operation handles.
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>

#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#else // The device has none.
#define CALLGRIND_START_INSTRUMENTATION
#define CALLGRIND_DUMP_STATS
#define CALLGRIND_ZERO_STATS
#endif

#include "Scenarios.h"

namespace
{

/// Process groups that no process is in: the emulator's plugin takes the question for a mark.
constexpr long beginMark = 0x53444d01;
constexpr long endMark = 0x53444d02;

/// What needs no preparing is run once for practice; the rest happens once in a process's life, on a heap still whole.
void measure(const bench::Run& run)
{
  if (run.prepare)
    run.prepare();
  else
    run.run();
  CALLGRIND_START_INSTRUMENTATION;
  syscall(SYS_getpgid, beginMark);
  run.run();
  syscall(SYS_getpgid, endMark);
  CALLGRIND_DUMP_STATS;
}

void measureWarm(const bench::Run& run)
{
  CALLGRIND_START_INSTRUMENTATION;
  for (int i = 0; i < 2; ++i)
  {
    if (run.prepare)
      run.prepare();
    CALLGRIND_ZERO_STATS;
    run.run();
  }
  CALLGRIND_DUMP_STATS;
}

bench::Run find(const std::string& wanted)
{
  const std::size_t at = wanted.find('@');
  for (const bench::Scenario& scenario : bench::allScenarios())
  {
    if (scenario.name != wanted.substr(0, at))
      continue;
    bench::Shape shape = scenario.shape;
    if (at != std::string::npos)
      shape.items = std::stoul(wanted.substr(at + 1));
    return scenario.make(shape);
  }
  throw std::runtime_error("no operation is called " + wanted);
}

} // namespace

int main(int argc, char** argv)
{
  const bool warm = argc == 3 && std::strcmp(argv[1], "--warm") == 0;
  if (argc != 2 && !warm)
    return 2;
  const bench::Run run = find(argv[argc - 1]);
  warm ? measureWarm(run) : measure(run);
  std::printf("%zu\n", run.units);
  return 0;
}
