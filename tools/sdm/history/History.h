// What gave items their values, or would have: kept in the device's folder, a line an event.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "HistoryEvent.h"
#include "HistoryFile.h"
#include "HistoryLines.h"

namespace cli
{

/// The time of now, as events bear it.
std::string historyTime();

/// May be used from any thread. The file is read when somebody asks, or when a start gave something new, and never has
/// more than 2 MiB: of a longer one the last events of each item are kept, and how many were dropped is told. What the
/// file does not take is kept here, up to a size.
class History
{
public:
  /// For the folder of a device that runs.
  explicit History(const std::filesystem::path& deviceFolder);

  /// What a folder tells of an item, without touching it. Throws `StartError` naming the file when there is none that
  /// can be read. What is no line of a history is passed over.
  static ItemHistory read(const std::filesystem::path& deviceFolder, const std::string& rootId);

  /// The items that a folder tells of. As `read`.
  static std::vector<std::string> knownIds(const std::filesystem::path& deviceFolder);

  /// Values and reasons of more than 4096 bytes are cut short, and say so.
  void add(const std::vector<HistoryEvent>& more);

  /// What a start gave, in the order of its calls. In the file goes what an item got otherwise than from the start
  /// before, and a line that there was a start. `start` has its run and how many requests the run had sent before; the
  /// rest is found out.
  void addStart(std::vector<HistoryEvent> given, StartMark start);

  ItemHistory of(const std::string& rootId) const;

  /// The event that gave the service the value that it has now, of this run; nothing when no setter took one. Whoever
  /// tells where a value came from asks here.
  std::optional<HistoryEvent> live(const std::string& rootId) const;

  /// The service is made anew and has no value yet.
  void forgetLive();

  /// Why the file does not have what happens; empty when it has.
  std::string problem() const;

private:
  using LineTaker = std::function<void(std::string_view)>;

  /// All with the mutex held.
  int readAll(const LineTaker& take) const;
  std::optional<StartMark> lastStart() const;
  void write(const std::string& text);
  void keepAlive(const std::vector<HistoryEvent>& more);
  void keepHere(const std::string& text);
  void compact();

  const HistoryFile file;
  mutable std::mutex mutex;
  std::map<std::string, HistoryEvent> alive;
  /// Whether the next start begins with nothing.
  bool anew = true;
  /// Lines that the file did not take.
  std::string unwritten;
  std::string trouble;
};

} // namespace cli
