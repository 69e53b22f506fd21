// Which callbacks take long, and who waits for whom.
#include <algorithm>
#include <chrono>
#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

#include "CommandFunctions.h"
#include "Shown.h"
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
  Cells cells = {"CALLBACK", "CALLS", "TOTAL ms", "LONGEST ms"};
  for (const auto bound : host::callTimeBounds)
    cells.push_back(bound < std::chrono::milliseconds(1) ? "<0.1 ms"
                                                         : "<" + std::to_string(bound.count() / 1000) + " ms");
  cells.push_back("longer");
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
  std::string text = padded(cells.front(), widths.front());
  for (std::size_t i = 1; i < cells.size(); ++i)
    text += std::string(2 + widths[i] - cells[i].size(), ' ') + cells[i];
  return text;
}

void printCallTimes(Session& session)
{
  std::vector<Cells> rows = {heading()};
  for (const host::CallTime& time : host::callTimes())
    rows.push_back(cellsOf(time));
  std::vector<std::size_t> widths(rows.front().size());
  for (const Cells& cells : rows)
  {
    for (std::size_t i = 0; i < cells.size(); ++i)
      widths[i] = std::max(widths[i], width(cells[i]));
  }
  session.out << session.style.strong(line(rows.front(), widths)) << "\n";
  for (std::size_t i = 1; i < rows.size(); ++i)
    session.out << line(rows[i], widths) << "\n";
}

void printUsers(Session& session, const char* what, const std::vector<host::LockUser>& users)
{
  for (const host::LockUser& user : users)
    session.out << what << shown(user.description()) << " for " << user.duration.count() << " ms\n";
}

void printLock(Session& session, const host::LockReport& lock)
{
  session.out << (lock.holders.empty() ? "the lock is free\n" : "");
  printUsers(session, "the lock is held by ", lock.holders);
  printUsers(session, "waiting: ", lock.waiters);
  session.out << "longest wait for it: " << lock.longestWait.count() << " ms";
  if (!lock.longestWaitBehind.empty())
    session.out << ", behind " << shown(lock.longestWaitBehind);
  session.out << "; " << lock.slowWaits << " waits of more than " << host::slowWait().count() << " ms\n";
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
