// Watches what passes between the manager and a service: the manager drops results that an operator wants to know.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "CallListener.h"
#include "CallReport.h"
#include "map/ItemTable.h"

namespace cli
{

/// May be used from any thread.
class CallWatch : public CallListener
{
public:
  explicit CallWatch(const ItemTable& items);

  void operationBegins(const OperationCall& call) override;
  void operationEnded(const OperationCall& call, const OperationAnswer& answer) override;
  void setterBegins(const SetterCall& call) override;
  void setterEnded(const SetterCall& call) override;
  void getterEnded(const GetterCall& call) override;
  void validatorEnded(const ValidatorCall& call) override;

  /// The values of its members that were taken and not judged are gone.
  void groupCleared(const std::string& group);

  /// The last value that the service took: of a member of a group, that was judged with success. Nothing before the
  /// first. Secrets included, so not for display.
  std::optional<std::string> taken(const std::string& setter, const std::string& row) const;

  /// Any text, with a mask in place of every secret that the service may know: those that it works with, and those that
  /// were handed to it in an operation that still runs.
  std::string tellable(const std::string& text) const override;
  std::string itemOf(const std::string& callback, const std::string& row) const override;

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

  bool isSecret(const Place& place) const;
  void notePassing(const Place& place, const std::string& value);
  void noteRefusal(const Place& place, const std::string& reason);
  void groupJudged(const std::string& group, bool accepted, const std::string& reason);
  void groupGiven(const std::vector<std::pair<std::string, std::string>>& items);

  std::map<Place, Item> places;
  /// Of setters and of getters.
  std::map<Place, std::string> rootIds;
  mutable std::mutex mutex;
  std::map<Place, std::string> live;
  std::map<std::string, std::map<Place, std::string>> pending;
  /// Secrets of the operations that run, besides those in `live` and `pending`.
  std::set<std::string> passing;
  std::size_t operations = 0;
  CallReport report;
};

} // namespace cli
