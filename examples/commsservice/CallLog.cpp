#include "CallLog.h"

#include <utility>

namespace commsservice
{

void CallLog::setterCalled(bool withLocalValue)
{
  const std::lock_guard<std::mutex> hold(mutex);
  ++report.setterCalls;
  if (withLocalValue)
    ++report.localValues;
}

void CallLog::repeated()
{
  const std::lock_guard<std::mutex> hold(mutex);
  ++report.refused;
  ++report.repeated;
}

void CallLog::refused(SetterRefusal refusal)
{
  const std::lock_guard<std::mutex> hold(mutex);
  ++report.refused;
  if (report.refusals.size() < mostKept)
    report.refusals.push_back(std::move(refusal));
}

void CallLog::judged(const std::string& group, const std::string& refusal)
{
  const std::lock_guard<std::mutex> hold(mutex);
  ++report.groupsJudged;
  if (!refusal.empty() && report.groupRefusals.size() < mostKept)
    report.groupRefusals.push_back({group, refusal});
}

CallReport CallLog::take()
{
  const std::lock_guard<std::mutex> hold(mutex);
  return std::exchange(report, CallReport());
}

} // namespace commsservice
