// What `sdm run` was asked to do.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>

namespace cli
{

struct RunSettings
{
  /// Nothing given: the sample service.
  std::optional<std::filesystem::path> service;
  /// Nothing given: the service's own map.
  std::optional<std::filesystem::path> map;
  std::filesystem::path device = "device";
  std::uint32_t interfaces = 1;
  int logLevel = 2;
  /// 0 for none.
  std::chrono::milliseconds slowWait{1000};
};

} // namespace cli
