// usage: load OPERATIONS [SEED]
// Eight threads ask one manager for OPERATIONS operations of all kinds while its services come and go. Prints what was
// done and what was wrong, if anything; the exit code tells that as well.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>
#include <unistd.h>

#include <DasCrypt.h>
#include <ManageableData.h>

#include "Items.h"
#include "Load.h"
#include "Values.h"
#include "host/DeviceLog.h"
#include "host/KeyFile.h"

namespace threads
{
namespace
{

constexpr int workerCount = 8;

/// The working folder of the load, with its map and key, for as long as it lives.
class Folder
{
public:
  Folder()
  {
    std::string pattern = (std::filesystem::temp_directory_path() / "threadsXXXXXX").string();
    path = ::mkdtemp(pattern.data());
    std::filesystem::current_path(path);
    std::ofstream("CommsSettings.csv") << itemMapFile();
    host::useKeyFile(path / "das.key");
    // Lines of the lost and the unknown come by the thousand.
    host::openLog({{}, 0, 0});
  }
  ~Folder()
  {
    std::filesystem::current_path("/");
    std::filesystem::remove_all(path);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

private:
  std::filesystem::path path;
};

void runPhase(std::vector<Worker>& workers, std::size_t operations, bool withReady)
{
  std::vector<std::thread> running;
  for (Worker& worker : workers)
    running.emplace_back([&worker, operations, withReady] { worker.work(operations / workerCount, withReady); });
  for (std::thread& thread : running)
    thread.join();
}

std::string liveOf(World& world, const std::string& rootId)
{
  return world.live.count(rootId) == 0 ? "default" : world.live[rootId];
}

std::string storedOf(World& world, const Item& item)
{
  const std::string cell = world.das.cells[item.rootId];
  std::string plain = cell;
  if (item.encrypted)
    DasCrypt::fromEncryptedText(cell, plain);
  return plain;
}

void setEverything(World& world)
{
  ManageableData data;
  for (const Item& item : items())
  {
    if (!item.isLocal())
      data.populate(item.rootId, item.rootId, "T99-1-accept");
  }
  world.violations.expect(world.manager->setData(data), "the last request was refused");
}

/// With all services there again a set reaches everyone, and a later start finds and publishes what was set.
void checkEnd(World& world)
{
  Violations& violations = world.violations;
  ServiceDataManagerIfc& manager = *world.manager;
  world.weather.clear();
  manager.clearAllManagedData();
  manager.setStartup(true);
  manager.initialise("CommsItemMap");
  for (const Item& item : items())
  {
    const auto stored = world.das.cells.count(item.rootId) == 0 ? "default" : storedOf(world, item);
    violations.expect(item.isLocal() || liveOf(world, item.rootId) == stored,
                      item.rootId + " is " + liveOf(world, item.rootId) + " but stored as " + stored);
  }
  setEverything(world);
  manager.setStartup(false);
  manager.initialise("CommsItemMap");
  for (const Item& item : items())
  {
    if (item.isLocal())
      continue;
    const std::string now = liveOf(world, item.rootId);
    violations.expect(now == "T99-1-accept", item.rootId + " ended as " + now);
    violations.expect(storedOf(world, item) == now, item.rootId + " is stored as " + storedOf(world, item));
    violations.expect(!item.hasGetter || world.store.published[item.rootId] == now,
                      item.rootId + " is published as " + world.store.published[item.rootId]);
  }
}

void print(const World& world, const Tally& tally, double seconds)
{
  for (std::size_t i = 0; i < kindCount; ++i)
    std::printf("%8zu  %s\n", tally.operations[i], kinds()[i].name);
  std::printf("%8zu  operations in %.1f s; %zu ended by an exception\n", tally.total(), seconds, tally.thrown);
  std::printf("%8zu  items set, %zu unknown just then, %zu reject reasons, %zu values read\n", tally.itemsSet,
              tally.itemsUnknown, tally.reasons, tally.valuesRead);
  std::printf("%8zu  updates of the database, %zu security log records, %zu renewals, %zu registrations\n",
              world.das.updates, world.securityLog.records, world.renewals, world.store.registrations.load());
}

int load(std::size_t operations, std::uint64_t seed)
{
  std::printf("%zu operations by %d threads, seed %llu\n", operations, workerCount,
              static_cast<unsigned long long>(seed));
  std::fflush(stdout);
  const Folder folder;
  World world;
  std::vector<Worker> workers;
  for (int i = 0; i < workerCount; ++i)
    workers.emplace_back(world, i, seed);

  const auto began = std::chrono::steady_clock::now();
  // At first no service is there; once the local store was found, `ready` may join in.
  world.weather.hidden = 15;
  runPhase(workers, operations / 10, false);
  world.weather.clear();
  world.manager->setStartup(true);
  world.manager->initialise("LoadedMap");
  runPhase(workers, operations - operations / 10, true);
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - began;
  checkEnd(world);

  Tally tally;
  for (const Worker& worker : workers)
    tally.add(worker.tally);
  print(world, tally, took.count());
  const bool busy = tally.itemsSet > 0 && tally.reasons > 0 && tally.valuesRead > 0 && world.das.updates > 0;
  world.violations.expect(busy, "hardly anything was done");
  const auto wrong = world.violations.all();
  for (std::size_t i = 0; i < wrong.size() && i < 20; ++i)
    std::printf("WRONG: %s\n", wrong[i].c_str());
  std::printf("%zu things went wrong\n", wrong.size());
  return wrong.empty() ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace
} // namespace threads

int main(int argc, char** argv)
{
  if (argc < 2 || argc > 3)
  {
    std::fprintf(stderr, "usage: load OPERATIONS [SEED]\n");
    return 2;
  }
  const std::uint64_t seed = argc == 3 ? std::strtoull(argv[2], nullptr, 10) : std::random_device()();
  return threads::load(std::strtoul(argv[1], nullptr, 10), seed);
}
