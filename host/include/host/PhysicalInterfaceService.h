// The hardware a host device pretends to have.
#pragma once

#include <PhysicalInterfaceServiceIfc.h>

#include <cstdint>

#include "host/HostExport.h"

namespace host
{
/// Answers the count it was made with.
class SDM_HOST_EXPORT PhysicalInterfaceService : public ::PhysicalInterfaceServiceIfc
{
public:
  /// `count` is not judged: any number is a number of interfaces.
  explicit PhysicalInterfaceService(std::uint32_t count);
  std::uint32_t getInterfaceCount() override;

private:
  const std::uint32_t count;
};
} // namespace host
