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
  /// Where the transcript goes; nothing given: there is none.
  std::optional<std::filesystem::path> record;
  /// Leaves out of standard error what went well, and the log.
  bool quiet = false;
  /// Shows the log where it would only go to its file.
  bool showLog = false;
  /// Whether a transcript that is there already may be overwritten.
  bool force = false;
  /// Whether a folder that belongs to another service becomes this one's.
  bool takeOver = false;
  /// What of the log reaches standard error, as far as the gate is open.
  int consoleLevel = 6;
};

} // namespace cli
