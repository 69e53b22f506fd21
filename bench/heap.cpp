// How often each operation on a map of 1,000 items asks for memory, and what a loaded item holds of it.
//
// usage: heap_library, in a folder of its own. Prints a line of JSON. With an argument, the largest map to load.
#include <cstdio>
#include <cstdlib>

#include "CountingNew.h"
#include "Scenarios.h"
#include "Subject.h"

namespace
{

void printRequests(const bench::Scenario& scenario)
{
  const bench::Run run = scenario.make(scenario.shape);
  const std::size_t requests = cost::requestsOf(run);
  std::printf("\"%s\": {\"requests\": %zu, \"items\": %zu}", scenario.name.c_str(), requests, run.units);
}

void printHeap(std::size_t items)
{
  bench::Subject subject({items, 50});
  std::size_t texts = 0;
  for (const bench::Item& item : subject.workload.items)
  {
    for (const std::string* text :
         {&item.rootId, &item.schema, &item.column, &item.indexColumn, &item.indexValue, &item.userMark, &item.group})
      texts += text->size();
    texts += std::char_traits<char>::length(bench::defaultValue);
  }
  subject.renewManager();
  const std::size_t before = cost::heap.bytes;
  ServiceDataManagerTestAccess::load(*subject.manager, "CommsItemMap");
  const auto each = [items](std::size_t bytes) { return static_cast<double>(bytes) / static_cast<double>(items); };
  std::printf("{\"items\": %zu, \"bytes\": %.1f, \"texts\": %.1f}", items, each(cost::heap.bytes - before),
              each(texts));
}

} // namespace

int main(int argc, char** argv)
{
  std::printf("{\"operations\": {");
  const char* separator = "";
  for (const bench::Scenario& scenario : bench::operations())
  {
    std::printf("%s", separator);
    printRequests(scenario);
    separator = ",\n";
  }
  std::printf("},\n\"heap\": [");
  printHeap(1000);
  std::printf(", ");
  printHeap(argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 100000);
  std::printf("]}\n");
  return 0;
}
