// Exchanges are kept in a queue, of which the oldest go first; the real service is called without the lock.
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

constexpr std::size_t mostKept = 4UL * 1024 * 1024;

std::size_t sizeOf(const Exchange& exchange)
{
  return exchange.request.size() + exchange.reply.size() + exchange.failure.size();
}
} // namespace

void TrafficListener::requestBegins(const std::string& /*request*/)
{
}

void TrafficListener::exchangeEnded(const Exchange& /*exchange*/)
{
}

TrafficRecorder::TrafficRecorder(::DataAccessServiceIfc& itsReal, std::size_t itsKeep) : real(itsReal), keep(itsKeep)
{
}

void TrafficRecorder::listen(TrafficListener* listener)
{
  hearer = listener;
}

std::string TrafficRecorder::sendRequest(const char* request, std::size_t length)
{
  const Mark mark(MarkKind::callback, "DataAccessServiceIfc");
  Exchange exchange;
  exchange.request.assign(request, length);
  if (hearer != nullptr)
    hearer->requestBegins(exchange.request);
  try
  {
    std::string reply = answered(exchange, request, length);
    remember(std::move(exchange));
    return reply;
  }
  catch (...)
  {
    if (!exchange.failure.empty())
      remember(std::move(exchange));
    throw;
  }
}

std::string TrafficRecorder::answered(Exchange& exchange, const char* request, std::size_t length)
{
  const Clock::time_point start = Clock::now();
  try
  {
    exchange.reply = real.sendRequest(request, length);
    exchange.duration = since(start);
    return exchange.reply;
  }
  catch (const std::exception& error)
  {
    const std::string text = error.what();
    exchange.failure = text.empty() ? "unknown failure" : text;
    exchange.duration = since(start);
    throw;
  }
  catch (...)
  {
    exchange.failure = "unknown failure";
    exchange.duration = since(start);
    throw;
  }
}

void TrafficRecorder::remember(Exchange exchange)
{
  {
    const std::lock_guard<std::mutex> lock(mutex);
    exchange.number = ++ended;
    keptSize += sizeOf(exchange);
    kept.push_back(exchange);
    // The last one is kept whatever its size: who sent it may ask what became of it.
    while (kept.size() > keep || (keptSize > mostKept && kept.size() > 1))
    {
      keptSize -= sizeOf(kept.front());
      kept.pop_front();
    }
  }
  if (hearer != nullptr)
    hearer->exchangeEnded(exchange);
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
