// The number of interfaces is told at the start and stays.
#include "host/PhysicalInterfaceService.h"

namespace host
{
PhysicalInterfaceService::PhysicalInterfaceService(std::uint32_t interfaceCount) : count(interfaceCount)
{
}

std::uint32_t PhysicalInterfaceService::getInterfaceCount()
{
  return count;
}
} // namespace host
