// Turns the calls of a service's setters into its device's history.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "History.h"
#include "map/ItemTable.h"
#include "map/Masking.h"
#include "service/PlatformWatch.h"

namespace cli
{

/// May be used from any thread.
class HistoryRecorder : public CallListener
{
public:
  /// Borrows all of it.
  HistoryRecorder(History& itsHistory, const ItemTable& items, const Masking& masking, std::uint32_t itsInterfaces);

  void operationBegins(const OperationCall& call) override;
  void operationEnded(const OperationCall& call, const OperationAnswer& answer) override;
  void setterEnded(const SetterCall& call) override;
  void validatorEnded(const ValidatorCall& call) override;
  void serviceSought(const std::string& interfaceName, bool found) override;
  void exchangeEnded(const host::Exchange& exchange) override;

private:
  struct Pending
  {
    HistoryEvent event;
    const MapItem* item;
  };

  /// Which values an operation of the manager hands out.
  enum class Source
  {
    stored, ///< a start: defaults, database, local store
    set,
    reset,
    reload,
    changed
  };

  struct HeardExchange
  {
    std::uint64_t number;
    std::string request;
    ExchangeOutcome outcome;
  };

  /// An operation that goes on.
  struct Work
  {
    std::string operation;
    Source source;
    std::vector<Pending> pending;
    /// Its own; of a start, which finds them in the replies' order, none are kept.
    std::vector<HeardExchange> exchanges;
    /// The number of its last exchange, 0 before the first.
    std::uint64_t lastExchange = 0;
    /// How many exchanges of the run were over before its first.
    std::uint64_t requestsBefore = 0;
    /// The database was looked for and not found.
    bool noDatabase = false;
  };

  static Source sourceOf(const std::string& operation);
  const char* originOf(const Work& work, const MapItem& item) const;
  void note(Work& work, const MapItem& item, const std::string& value, const std::string& outcome,
            const std::string& reason) const;
  void noteRejected(Work& work, ManageableData& data) const;
  Work* workOfThisThread();
  static void findRequest(const Work& work, Pending& each);
  void finish(Work& work);

  History& history;
  const ItemTable& table;
  const Masking& masks;
  const std::uint32_t interfaces;
  const std::string run;
  /// By setter and row.
  std::map<std::pair<std::string, std::string>, const MapItem*> places;
  std::mutex mutex;
  /// By thread, the innermost last: a callback may ask the manager for something.
  std::map<std::thread::id, std::vector<Work>> works;
};

} // namespace cli
