// Reports wait in a queue, which one thread at a time empties, without the lock while an agent is called.
#include "Deliveries.h"

#include <ManageableData.h>
#include <MgmtAgentIfc.h>

#include <algorithm>
#include <exception>

#include "Log.h"

namespace host
{
void Deliveries::subscribe(const std::list<std::string>& rootIds, MgmtAgentIfc* agent)
{
  if (agent == nullptr)
    return;
  const std::lock_guard<std::mutex> lock(mutex);
  for (const std::string& rootId : rootIds)
    subscribers[rootId].insert(agent);
}

void Deliveries::add(const Values& changes)
{
  const std::lock_guard<std::mutex> lock(mutex);
  std::map<MgmtAgentIfc*, Values> byAgent;
  for (const auto& change : changes)
  {
    const auto interested = subscribers.find(change.first);
    if (interested == subscribers.end())
      continue;
    for (MgmtAgentIfc* agent : interested->second)
      byAgent[agent].push_back(change);
  }
  for (auto& [agent, values] : byAgent)
    reports.push_back({agent, std::move(values)});
}

void Deliveries::deliver()
{
  std::unique_lock<std::mutex> lock(mutex);
  if (deliverer != std::thread::id())
    return;
  deliverer = std::this_thread::get_id();
  while (!reports.empty())
  {
    const Report report = std::move(reports.front());
    reports.pop_front();
    busyAgent = report.agent;
    lock.unlock();
    make(report);
    lock.lock();
    busyAgent = nullptr;
    reportEnded.notify_all();
  }
  deliverer = std::thread::id();
}

void Deliveries::make(const Report& report)
{
  try
  {
    ManageableData data;
    for (const auto& [rootId, value] : report.values)
      data.populate(rootId, rootId, value);
    report.agent->observedDataChanged(data);
  }
  catch (const std::exception& error)
  {
    SDM_HOST_LOG(2, "management agent failed on a report: %s", error.what());
  }
  catch (...)
  {
    SDM_HOST_LOG(2, "management agent failed on a report");
  }
}

void Deliveries::forget(MgmtAgentIfc* agent)
{
  std::unique_lock<std::mutex> lock(mutex);
  for (auto& subscription : subscribers)
    subscription.second.erase(agent);
  const auto isForAgent = [&](const Report& report) { return report.agent == agent; };
  reports.erase(std::remove_if(reports.begin(), reports.end(), isForAgent), reports.end());
  if (deliverer != std::this_thread::get_id())
    reportEnded.wait(lock, [&] { return busyAgent != agent || agent == nullptr; });
}
} // namespace host
