// What became of the manager's requests to the platform since somebody last asked: noted as it happens, since what is
// remembered of the traffic is bounded, and nothing is concluded from what is missing there.
#pragma once

#include <cstddef>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "CallListener.h"
#include "map/ItemTable.h"

namespace cli
{

/// Requests of one kind about one schema that the database did not carry out.
struct DatabaseFailure
{
  std::string schema;
  /// A change, and not a read.
  bool update = false;
  /// Of the first of them, made safe to print.
  std::string reason;
};

/// What became of one request.
struct ExchangeOutcome
{
  std::string schema;
  bool update = false;
  /// Made safe to print; empty when the request was carried out.
  std::string failure;
};

/// Reads it out of request and reply. A reply of the wrong kind is a failure.
ExchangeOutcome outcomeOf(const host::Exchange& exchange);

struct PlatformReport
{
  /// In the order of their first ones.
  std::vector<DatabaseFailure> failures;
  std::size_t updatesTaken = 0;
  /// Calls of the setters of database items behind the first request, which bring what a start reads.
  std::size_t imported = 0;
  /// The database was looked for and not found, as was the store.
  bool noDatabase = false;
  bool noStore = false;
  /// The item that kept the store's check from passing; empty without one.
  std::string objection;
  /// How many items the last check was about.
  std::size_t checked = 0;
  /// The store refused to publish, or threw.
  bool publishRefused = false;
  std::size_t records = 0;
  std::size_t recordsLost = 0;
  /// Why, of the first one, made safe to print.
  std::string recordTrouble;

  /// The failures of changes, or of reads.
  std::vector<DatabaseFailure> failed(bool updates) const;
};

/// May be used from any thread.
class PlatformWatch : public CallListener
{
public:
  explicit PlatformWatch(const ItemTable& items);

  /// What was noted since the last call.
  PlatformReport take();

  void setterEnded(const SetterCall& call) override;
  void serviceSought(const std::string& interfaceName, bool found) override;
  void exchangeEnded(const host::Exchange& exchange) override;
  void storeEnded(const StoreCall& call) override;
  void recordEnded(const RecordCall& call) override;

private:
  /// Setters and rows of items that the database does not have.
  std::set<std::pair<std::string, std::string>> local;
  std::mutex mutex;
  bool asked = false;
  PlatformReport report;
  /// By schema and kind, so that a service that nobody asks does not grow.
  std::set<std::pair<std::string, bool>> known;
};

} // namespace cli
