// Which callbacks take long, and who waits for whom.
#include <algorithm>
#include <chrono>
#include <iomanip>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

#include "CommandFunctions.h"
#include "base/Screen.h"
#include "base/Shown.h"
#include "host/CallTimes.h"
#include "host/LockWatch.h"

namespace cli
{
namespace
{

using Cells = std::vector<std::string>;

std::string inMilliseconds(std::chrono::microseconds duration)
{
  std::ostringstream text;
  text << std::fixed << std::setprecision(2) << static_cast<double>(duration.count()) / 1000.0;
  return text.str();
}

Cells heading()
{
  Cells cells = {"CALLBACK", "CALLS", "TOTAL", "LONGEST"};
  for (const auto bound : host::callTimeBounds)
    cells.push_back(bound < std::chrono::milliseconds(1) ? "<0.1" : "<" + std::to_string(bound.count() / 1000));
  cells.push_back("more");
  return cells;
}

Cells cellsOf(const host::CallTime& time)
{
  Cells cells = {shown(time.name), std::to_string(time.calls), inMilliseconds(time.total),
                 inMilliseconds(time.longest)};
  for (const auto count : time.histogram)
    cells.push_back(count == 0 ? "." : std::to_string(count));
  return cells;
}

/// Names to the left, numbers to the right.
std::string line(const Cells& cells, const std::vector<std::size_t>& widths)
{
  std::string text = padded(clipped(cells.front(), widths.front()), widths.front());
  for (std::size_t i = 1; i < cells.size(); ++i)
    text += std::string(2 + widths[i] - cells[i].size(), ' ') + cells[i];
  return text;
}

/// Names give way to numbers.
void fit(std::vector<std::size_t>& widths, std::size_t columns)
{
  constexpr std::size_t shortestName = 12;
  const std::size_t numbers = std::accumulate(widths.begin() + 1, widths.end(), 2 * (widths.size() - 1));
  if (columns != 0)
    widths.front() = std::min(widths.front(), std::max(shortestName, columns - std::min(columns, numbers)));
}

void printCallTimes(Session& session)
{
  std::vector<host::CallTime> times = host::callTimes();
  std::stable_sort(times.begin(), times.end(),
                   [](const host::CallTime& a, const host::CallTime& b) { return a.total > b.total; });
  std::vector<Cells> rows = {heading()};
  for (const host::CallTime& time : times)
    rows.push_back(cellsOf(time));
  std::vector<std::size_t> widths(rows.front().size());
  for (const Cells& cells : rows)
  {
    for (std::size_t i = 0; i < cells.size(); ++i)
      widths[i] = std::max(widths[i], width(cells[i]));
  }
  fit(widths, session.columns);
  session.out << session.style.strong(line(rows.front(), widths)) << "\n";
  for (std::size_t i = 1; i < rows.size(); ++i)
    session.out << line(rows[i], widths) << "\n";
  session.out << session.style.faint(
                     wrapped("times in ms, and how many calls stayed below so many", session.columns, 0))
              << "\n";
}

void printUsers(Session& session, const char* what, const std::vector<host::LockUser>& users)
{
  for (const host::LockUser& user : users)
    session.out << wrapped(what + shown(user.description()) + " for " + std::to_string(user.duration.count()) + " ms",
                           session.columns, 2)
                << "\n";
}

void printLock(Session& session, const host::LockReport& lock)
{
  session.out << (lock.holders.empty() ? "the lock is free\n" : "");
  printUsers(session, "the lock is held by ", lock.holders);
  printUsers(session, "waiting: ", lock.waiters);
  const std::string behind = lock.longestWaitBehind.empty() ? "" : ", behind " + shown(lock.longestWaitBehind);
  const std::string text = "longest wait for it: " + std::to_string(lock.longestWait.count()) + " ms" + behind + "; " +
                           counted(static_cast<std::size_t>(lock.slowWaits), "wait") + " of more than " +
                           std::to_string(host::slowWait().count()) + " ms";
  session.out << wrapped(text, session.columns, 2) << "\n";
}

} // namespace

Outcome showStats(Session& session, const Arguments&)
{
  printCallTimes(session);
  for (const host::LockReport& lock : host::lockReports())
    printLock(session, lock);
  return Outcome::done;
}

} // namespace cli
