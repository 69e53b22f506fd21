// Turns the calls of a service's setters into its device's history.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "ItemTable.h"
#include "Masking.h"
#include "explain/History.h"
#include "host/Traffic.h"
#include "service/CallListener.h"

namespace cli
{

/// May be used from any thread.
class HistoryRecorder : public CallListener
{
public:
  /// Borrows all of it.
  HistoryRecorder(History& itsHistory, const ItemTable& items, const Masking& masking,
                  const host::TrafficRecorder& itsTraffic, std::uint32_t itsInterfaces);

  void operationBegins(const OperationCall& call) override;
  void operationEnded(const OperationCall& call, const OperationAnswer& answer) override;
  void setterEnded(const SetterCall& call) override;
  void validatorEnded(const ValidatorCall& call) override;

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

  /// An operation that goes on.
  struct Work
  {
    Source source;
    std::uint64_t exchangesBefore;
    std::vector<Pending> pending;
  };

  static Source sourceOf(const std::string& operation);
  const char* originOf(const Work& work, const MapItem& item) const;
  void note(Work& work, const MapItem& item, const std::string& value, const std::string& outcome,
            const std::string& reason) const;
  void noteRejected(Work& work, ManageableData& data) const;
  void findRequest(const Work& work, Pending& each, const std::vector<host::Exchange>& exchanges) const;
  void finish(Work& work);

  History& history;
  const ItemTable& table;
  const Masking& masks;
  const host::TrafficRecorder& traffic;
  const std::uint32_t interfaces;
  const std::string run;
  /// By setter and row.
  std::map<std::pair<std::string, std::string>, const MapItem*> places;
  std::mutex mutex;
  /// By thread, the innermost last: a callback may ask the manager for something.
  std::map<std::thread::id, std::vector<Work>> works;
};

} // namespace cli
