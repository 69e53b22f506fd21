// What the trial of a service reports while it runs.
#pragma once

#include <functional>
#include <string>

#include "ServiceCheck.h"

namespace cli
{

/// Both functions are called on the thread of the trial. What they throw reaches the caller of the trial.
class TrialReport
{
public:
  TrialReport(std::function<void(const ServiceFinding&)> itsFound, std::function<void(const std::string&)> itsStep);

  /// What is about to be tried: "when its setter ...". The last one says where the process ended.
  void step(const std::string& text) const;

  /// `rootId` as in `ServiceFinding`: empty for a finding about the service as a whole.
  void find(const std::string& rootId, const std::string& rule, const std::string& text) const;

  /// Calls the service. False when the call throws, which is a finding under `rule` then: "`what` throws: ...".
  bool guarded(const std::string& rootId, const std::string& what, const std::string& rule,
               const std::function<void()>& call) const;

private:
  std::function<void(const ServiceFinding&)> found;
  std::function<void(const std::string&)> stepped;
};

/// The end of a sentence about a refusal: ": REASON", safe to print, or that there is no reason.
std::string because(const std::string& reason);

} // namespace cli
