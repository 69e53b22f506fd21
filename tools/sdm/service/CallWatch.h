// Watches what passes between the manager and a service: the manager drops results that an operator wants to know.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "CallListener.h"
#include "CallReport.h"
#include "ItemTable.h"

namespace cli
{

/// May be used from any thread.
class CallWatch : public CallListener
{
public:
  explicit CallWatch(const ItemTable& items);

  void setterEnded(const SetterCall& call) override;
  void validatorEnded(const ValidatorCall& call) override;

  /// The values of its members that were taken and not judged are gone.
  void groupCleared(const std::string& group);

  /// The last value that the service took: of a member of a group, that was judged with success. Nothing before the
  /// first. Secrets included, so not for display.
  std::optional<std::string> taken(const std::string& setter, const std::string& row) const;

  /// What was noted since the last call.
  CallReport take();

private:
  /// Setter and row.
  using Place = std::pair<std::string, std::string>;

  struct Item
  {
    std::string group;
    bool local = false;
  };

  /// A service that nobody asks must not grow.
  static constexpr std::size_t mostKept = 500;

  void noteRefusal(const Place& place, const std::string& reason);
  void groupJudged(const std::string& group, bool accepted, const std::string& reason);
  void groupGiven(const std::vector<std::pair<std::string, std::string>>& items);

  std::map<Place, Item> places;
  mutable std::mutex mutex;
  std::map<Place, std::string> live;
  std::map<std::string, std::map<Place, std::string>> pending;
  CallReport report;
};

} // namespace cli
