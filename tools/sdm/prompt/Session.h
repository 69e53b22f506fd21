// The context of a command: the device, the output, and the refusals so far.
#pragma once

#include <map>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "base/Style.h"
#include "device/RunningDevice.h"

namespace cli
{

/// How a command ended, for the exit code of a script.
enum class Outcome
{
  done,
  refused
};

/// Where a session writes.
struct SessionOutput
{
  /// Answers of commands, and nothing else: a script reads them.
  std::ostream& answers;
  /// For people: reports of starts, refusals, notices.
  std::ostream& remarks;
  /// Of each.
  Style answerStyle;
  Style remarkStyle;
  /// Leaves out of the remarks what went well.
  bool quiet = false;
  /// How wide answers may be; 0 for any width.
  std::size_t columns = 0;
};

class Session
{
public:
  /// Borrows device and streams.
  Session(RunningDevice& runningDevice, const SessionOutput& output);

  RunningDevice& running;
  /// As in `SessionOutput`.
  std::ostream& out;
  std::ostream& remarks;
  const Style style;
  const Style remarkStyle;
  const bool quiet;
  std::size_t columns;
  bool quit = false;

  /// The item of this root id; when there is none, says so with a suggestion and answers null.
  const MapItem* known(const std::string& rootId);

  /// The values the service works with, by root id; an item whose value nobody answers is missing. Secrets are
  /// read only when asked for, and are to be masked then: each is a request to the database of its own.
  std::map<std::string, std::string> values(const std::vector<const MapItem*>& items, bool withSecrets = false);

  /// The event that gave the service its value; nothing when no setter took one. Items that share a setter and a row
  /// share their value, too.
  std::optional<HistoryEvent> givenBy(const MapItem& item) const;

  /// "database", "default" and so on, as that event has it.
  std::string origin(const MapItem& item) const;

  /// Whether the database holds another value than `value`, which the service works with. Of a secret it is the
  /// service's own value that counts, and what cannot be decrypted cannot be compared.
  bool differsFromDatabase(const MapItem& item, const std::string& value);

  /// For an item that differs: what is known about the reason, as a sentence.
  std::string whyItDiffers(const MapItem& item) const;

  /// Whether the database holds a value of it at all.
  bool isStored(const MapItem& item);

  /// Forgets what the service refused.
  void forgetRefusals();

  /// "refused: " and a text, on a line of the remarks. From then on the command counts as failed, whatever it answers.
  Outcome refuse(const std::string& why);

  /// Refuses for each request that the platform did not carry out.
  void tellFailures(const PlatformReport& report);

  /// Whether something was refused since the last call.
  bool takeRefused();

  /// Prints the values that the service refused, one a line of the remarks, and remembers them.
  void printRefusals(const CallReport& report);

  /// The item of the map that a refusal of the service is about, or null.
  const MapItem* refusedItem(const SetterRefusal& refusal) const;

private:
  /// The first item of the map with this setter and row, or null.
  const MapItem* itemAt(const std::string& setter, const std::string& row) const;

  /// Decrypted, as far as that is possible.
  std::optional<std::string> stored(const MapItem& item);
  void noteRefusals(const CallReport& report);

  bool anyRefused = false;
  std::set<std::string> refusals;
  std::set<std::string> refusedGroups;
};

} // namespace cli
