// The reports that the local management store owes its subscribers.
#pragma once

#include <condition_variable>
#include <deque>
#include <list>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

class MgmtAgentIfc;

namespace host
{
/// Knows who subscribed to what, and makes the reports: one at a time, in the order in which they were added, without
/// holding its lock. Every operation may be called from any thread.
class Deliveries
{
public:
  using Values = std::vector<std::pair<std::string, std::string>>;

  void subscribe(const std::list<std::string>& rootIds, MgmtAgentIfc* agent);

  /// Adds the reports that these changes call for, one for each agent. The order of the calls is that of the reports.
  void add(const Values& changes);

  /// Makes all reports, or leaves them to the thread that is already at it (maybe further up on this one's stack).
  void deliver();

  /// On return the agent is not subscribed, and no report to it is under way but one on this very thread.
  void forget(MgmtAgentIfc* agent);

private:
  struct Report
  {
    MgmtAgentIfc* agent;
    Values values;
  };

  static void make(const Report& report);

  std::mutex mutex;
  std::condition_variable reportEnded;
  std::map<std::string, std::set<MgmtAgentIfc*>> subscribers;
  std::deque<Report> reports;
  std::thread::id deliverer;
  MgmtAgentIfc* busyAgent = nullptr;
};
} // namespace host
