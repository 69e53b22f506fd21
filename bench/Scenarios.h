// What is measured: one operation each, on a map of any size, and the floors to compare them with.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Workload.h"

namespace bench
{

/// An operation ready to run, as often as wanted.
struct Run
{
  /// What has to be done before each run, outside the measurement; may be empty.
  std::function<void()> prepare;
  std::function<void()> run;
  /// How many items a run handles.
  std::size_t units = 1;
};

struct Scenario
{
  std::string name;
  Shape shape;
  /// Handles every item of its map, and so is run on maps of several sizes; otherwise on the shape's alone.
  bool scales = false;
  std::function<Run(const Shape&)> make;
};

/// The library's operations.
std::vector<Scenario> operations();

/// What such work costs when nothing but the bare work is done: no checks, no locks, no log, no storage.
std::vector<Scenario> floors();

/// Those of the operations that handle every item of a map.
std::vector<Scenario> floorsOfMaps();

/// Floors that only the platform at hand has.
std::vector<Scenario> platformFloors();

/// All of them.
std::vector<Scenario> allScenarios();

} // namespace bench
