// A Data Access Service that remembers what passed through it.
#pragma once

#include <DataAccessServiceIfc.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

#include "host/HostExport.h"

namespace host
{
/// One request and what became of it.
struct SDM_HOST_EXPORT Exchange
{
  /// Counts all exchanges since the recorder was made, from 1.
  std::uint64_t number = 0;
  /// As sent, unmasked; without the terminator.
  std::string request;
  /// Empty when the service threw.
  std::string reply;
  /// What the service threw, as text; empty when it answered.
  std::string failure;
  /// How long the service worked on it.
  std::chrono::microseconds duration{0};
};

/// Hears of every exchange as it happens, on the thread of the request and without a lock of the recorder. It must not
/// throw. What it does not want to hear it leaves as it is here.
class SDM_HOST_EXPORT TrafficListener
{
public:
  virtual ~TrafficListener() = default;

  /// A request is about to be passed on; as sent, unmasked.
  virtual void requestBegins(const std::string& request);

  /// It was answered, or the service threw; before the requester hears of either.
  virtual void exchangeEnded(const Exchange& exchange);
};

/// Passes every request on and remembers the last ones. Requests may come from any thread, and it holds no lock while
/// the real service works on one.
class SDM_HOST_EXPORT TrafficRecorder : public ::DataAccessServiceIfc
{
public:
  /// Borrows `real`. Remembers the last `keep` exchanges, none at all when it is 0, and fewer when their texts have
  /// more than 4 MiB together; the last one always.
  TrafficRecorder(::DataAccessServiceIfc& real, std::size_t keep);

  /// The real service's answer; what it throws passes on and is remembered as a failure.
  std::string sendRequest(const char* request, std::size_t length) override;

  /// From now on this listener (borrowed) hears of every exchange, in place of an earlier one; null for nobody. What is
  /// remembered is bounded, so whoever has to know of each exchange listens. Not while requests are under way.
  void listen(TrafficListener* listener);

  /// How many exchanges ended since the recorder was made, which is the number of the last one.
  std::uint64_t count() const;

  /// The remembered exchanges in the order in which they ended, the oldest first. Texts are as sent, unmasked.
  std::vector<Exchange> exchanges() const;

private:
  void remember(Exchange exchange);
  std::string answered(Exchange& exchange, const char* request, std::size_t length);

  ::DataAccessServiceIfc& real;
  const std::size_t keep;
  TrafficListener* hearer = nullptr;
  mutable std::mutex mutex;
  std::uint64_t ended = 0;
  std::deque<Exchange> kept;
  std::size_t keptSize = 0;
};
} // namespace host
