// What gave an item its value, or would have.
#pragma once

#include <cstddef>
#include <cstdint>
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
constexpr const char* start = "start"; ///< of an item that the start gave nothing
} // namespace origin

/// What became of it.
namespace outcome
{
constexpr const char* taken = "taken";
constexpr const char* unchanged = "unchanged";           ///< taken, and it had been so already
constexpr const char* notTakenAgain = "not taken again"; ///< refused only because it is so already
constexpr const char* refused = "refused";
constexpr const char* heldBack = "held back";    ///< its group was not judged, since another member was refused
constexpr const char* nothing = "nothing given"; ///< by a start, where an earlier one had given something
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
  /// The start that gave it, counted from the device's first; 0 when it was given otherwise.
  std::uint64_t start = 0;
  /// How many requests the run had sent before that start.
  std::uint64_t requestsBefore = 0;
  /// How many starts just before gave the item the same and are not told one by one. Not in the file.
  std::uint64_t sameStartsBefore = 0;

  /// Whether the service had this value from then on.
  bool isLive() const
  {
    return outcome == outcome::taken || outcome == outcome::unchanged || outcome == outcome::notTakenAgain;
  }
};

/// All that is known of one item.
struct ItemHistory
{
  /// Oldest first. What the last start gave is there even when it was no news.
  std::vector<HistoryEvent> events;
  /// The run that anything is known of last; what gave an item its value before counts no more.
  std::string run;
  /// How many earlier events are told no more, and when the last of them happened.
  std::size_t dropped = 0;
  std::string droppedUntil;
};

} // namespace cli
