#include "host/Traffic.h"

#include <exception>

#include "host/Marks.h"

namespace host
{
namespace
{
using Clock = std::chrono::steady_clock;

std::chrono::microseconds since(Clock::time_point start)
{
  return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);
}
} // namespace

TrafficRecorder::TrafficRecorder(::DataAccessServiceIfc& realService, std::size_t keepLast)
    : real(realService), keep(keepLast)
{
}

std::string TrafficRecorder::sendRequest(const char* request, std::size_t length)
{
  const Mark mark(MarkKind::callback, "DataAccessServiceIfc");
  Exchange exchange;
  exchange.request.assign(request, length);
  const Clock::time_point start = Clock::now();
  try
  {
    exchange.reply = real.sendRequest(request, length);
  }
  catch (const std::exception& error)
  {
    exchange.failure = error.what();
    exchange.duration = since(start);
    remember(std::move(exchange));
    throw;
  }
  catch (...)
  {
    exchange.failure = "unknown failure";
    exchange.duration = since(start);
    remember(std::move(exchange));
    throw;
  }
  exchange.duration = since(start);
  std::string reply = exchange.reply;
  remember(std::move(exchange));
  return reply;
}

void TrafficRecorder::remember(Exchange exchange)
{
  const std::lock_guard<std::mutex> lock(mutex);
  exchange.number = ++ended;
  kept.push_back(std::move(exchange));
  if (kept.size() > keep)
    kept.pop_front();
}

std::uint64_t TrafficRecorder::count() const
{
  const std::lock_guard<std::mutex> lock(mutex);
  return ended;
}

std::vector<Exchange> TrafficRecorder::exchanges() const
{
  const std::lock_guard<std::mutex> lock(mutex);
  return {kept.begin(), kept.end()};
}
} // namespace host
