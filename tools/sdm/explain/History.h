// What gave items their values, or would have: kept in the device's folder, a line an event.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace cli
{

/// Where a value came from.
namespace origin
{
constexpr const char* byDefault = "default";
constexpr const char* alternative = "alternative default";
constexpr const char* database = "database";
constexpr const char* localStore = "local store";
constexpr const char* changed = "changed";
constexpr const char* set = "set";
constexpr const char* reset = "reset";
constexpr const char* reload = "reload";
} // namespace origin

/// What became of it.
namespace outcome
{
constexpr const char* taken = "taken";
constexpr const char* unchanged = "unchanged";           ///< taken, and it had been so already
constexpr const char* notTakenAgain = "not taken again"; ///< refused only because it is so already
constexpr const char* refused = "refused";
constexpr const char* heldBack = "held back"; ///< its group was not judged, since another member was refused
} // namespace outcome

struct HistoryEvent
{
  /// ISO 8601 in UTC, with milliseconds. `run` is when the program began that this happened in.
  std::string time;
  std::string run;
  std::string rootId;
  /// One of the above, as is `outcome`.
  std::string origin;
  std::string outcome;
  /// Masked for a secret.
  std::string value;
  /// Of a refusal; of a value that was taken, why it is not in the database.
  std::string reason;
  /// The number of the request that carried it, as `traffic` has it in that run; 0 for none.
  std::uint64_t request = 0;

  /// Whether the service had this value from then on.
  bool isLive() const
  {
    return outcome == outcome::taken || outcome == outcome::unchanged || outcome == outcome::notTakenAgain;
  }
};

/// The time of now, as events bear it.
std::string historyTime();

/// May be used from any thread.
class History
{
public:
  /// For the folder of a device that runs: what was written earlier is read, and of a file that has grown much only the
  /// last events of each item are kept. Without a readable file it begins empty.
  explicit History(const std::filesystem::path& deviceFolder);

  /// The events of a folder, oldest first, without touching it. Throws `StartError` naming the file when there is none
  /// that can be read. What is no line of a history is passed over.
  static std::vector<HistoryEvent> read(const std::filesystem::path& deviceFolder);

  void add(const std::vector<HistoryEvent>& more);

  /// Oldest first.
  std::vector<HistoryEvent> of(const std::string& rootId) const;

  /// The event that gave the service the value that it has now, of this run; nothing when no setter took one. Whoever
  /// tells where a value came from asks here.
  std::optional<HistoryEvent> live(const std::string& rootId) const;

  /// The service is made anew and has no value yet.
  void forgetLive();

  /// Why the file does not have what happens; empty when it has.
  std::string problem() const;

private:
  void compact();

  std::filesystem::path file;
  mutable std::mutex mutex;
  std::vector<HistoryEvent> events;
  std::map<std::string, HistoryEvent> alive;
  std::string trouble;
};

} // namespace cli
