// A call of the service that throws becomes a finding, so that the trial goes on with the next one.
#include "TrialReport.h"

#include <exception>
#include <utility>

#include "base/Shown.h"

namespace cli
{

TrialReport::TrialReport(std::function<void(const ServiceFinding&)> itsFound,
                         std::function<void(const std::string&)> itsStep)
    : found(std::move(itsFound)), stepped(std::move(itsStep))
{
}

void TrialReport::step(const std::string& text) const
{
  stepped(text);
}

void TrialReport::find(const std::string& rootId, const std::string& rule, const std::string& text) const
{
  found({rootId, rule, text});
}

bool TrialReport::guarded(const std::string& rootId, const std::string& what, const std::string& rule,
                          const std::function<void()>& call) const
{
  std::string thrown = "something that is no std::exception";
  try
  {
    call();
    return true;
  }
  catch (const std::exception& error)
  {
    thrown = shown(error.what());
  }
  catch (...)
  {
  }
  find(rootId, rule, what + " throws: " + thrown);
  return false;
}

std::string because(const std::string& reason)
{
  return reason.empty() ? ", without a reason" : ": " + shown(reason);
}

} // namespace cli
