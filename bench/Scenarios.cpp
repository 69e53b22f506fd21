#include "Scenarios.h"

#include <algorithm>
#include <iterator>

namespace bench
{

std::vector<Scenario> allScenarios()
{
  std::vector<Scenario> all = operations();
  for (std::vector<Scenario> more : {floors(), floorsOfMaps(), platformFloors()})
    std::move(more.begin(), more.end(), std::back_inserter(all));
  return all;
}

} // namespace bench
