// Counts what a map of 1,000 items takes of the heap, and how often the library asks for some of it while loading the
// map. Every request of a C++ program for memory comes through the operators below.
#include <malloc.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <new>

#include "ServiceDataManagerIfc.h"

namespace
{

constexpr int itemCount = 1000;

std::size_t requests = 0;
std::size_t blocks = 0;
std::size_t bytes = 0;

/// What the heap spends on a block: its room, and the word in front that tells how much that is.
std::size_t cost(void* block)
{
  return malloc_usable_size(block) + sizeof(std::size_t);
}

void* take(std::size_t size)
{
  void* block = std::malloc(size == 0 ? 1 : size);
  if (block != nullptr)
  {
    ++requests;
    ++blocks;
    bytes += cost(block);
  }
  return block;
}

void giveBack(void* block)
{
  if (block == nullptr)
    return;
  --blocks;
  bytes -= cost(block);
  std::free(block);
}

} // namespace

void* operator new(std::size_t size)
{
  if (void* block = take(size))
    return block;
  throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
  return take(size);
}

void operator delete(void* block) noexcept
{
  giveBack(block);
}

void operator delete(void* block, std::size_t) noexcept
{
  giveBack(block);
}

void operator delete(void* block, const std::nothrow_t&) noexcept
{
  giveBack(block);
}

namespace
{

struct Setter : ManagedItemSetter
{
  bool setValue(const std::string&, const std::string&, std::string&) override
  {
    return true;
  }
};

struct Getter : ManagedItemGetter
{
  std::string getValue(const std::string&) override
  {
    return "5060";
  }
};

/// Items as a device has them: names longer than a string holds without the heap, values shorter; of ten, one lives in
/// the local management store, one has a row, one belongs to a group, one is encrypted and one belongs to the user.
bool writeItemMap()
{
  std::FILE* map = std::fopen("CommsSettings.csv", "w");
  if (map == nullptr)
    return false;
  for (int i = 0; i < itemCount; ++i)
  {
    const int kind = i % 10;
    std::fprintf(map, "transport.setting%03d,", i);
    if (kind == 0)
      std::fprintf(map, ",,,,");
    else
      std::fprintf(map, "TransportSettings%02d,Setting%03d,%s,", i / 50, i, kind == 1 ? "Line,2" : ",");
    std::fprintf(map, "5060,set,get,%s,%s,,%s\n", kind == 2 ? "1" : "", kind == 3 ? "TransportPorts" : "",
                 kind == 4 ? "true" : "");
  }
  return std::fclose(map) == 0;
}

void show(const char* what, std::size_t amount)
{
  std::printf("%s %.1f\n", what, static_cast<double>(amount) / itemCount);
}

} // namespace

/// usage: heap_per_item DIRECTORY; the item map is written there.
int main(int argc, char** argv)
{
  if (argc != 2 || chdir(argv[1]) != 0 || !writeItemMap())
    return 2;
  const std::unique_ptr<ServiceDataManagerIfc> manager = makeServiceDataManager();
  manager->setup(nullptr, nullptr, "footprint", nullptr);
  manager->addSetter({"set", new Setter});
  manager->addGetter({"get", new Getter});
  const std::size_t requestsBefore = requests;
  const std::size_t blocksBefore = blocks;
  const std::size_t bytesBefore = bytes;
  manager->initialise("CommsItemMap");
  if (manager->getPublishedItem("transport.setting999") == nullptr)
    return 1;
  show("heap-bytes-per-item", bytes - bytesBefore);
  show("allocations-kept-per-item", blocks - blocksBefore);
  show("allocations-made-per-item", requests - requestsBefore);
  manager->deleteSetters();
  manager->deleteGetters();
  return 0;
}
