// The trial tells what it is about to do, so that its last word says where the process ended.
#include "ServiceCheck.h"

#include <string>

#include <nlohmann/json.hpp>

#include "ServiceTrial.h"
#include "base/OwnProcess.h"
#include "base/ScratchFolder.h"

namespace cli
{
namespace
{

using Json = nlohmann::json;

/// In a form that takes texts of any bytes.
std::string packed(const Json& message)
{
  const auto bytes = Json::to_cbor(message);
  return {bytes.begin(), bytes.end()};
}

/// What is about to be tried comes first, so that the last message says where the process ended.
void tryService(const Tell& tell, const std::filesystem::path& service, const std::filesystem::path& map,
                const std::filesystem::path& scratch)
{
  const TrialReport report(
      [&](const ServiceFinding& found) {
        tell(packed({found.rootId, found.rule, found.text}));
      },
      [&](const std::string& step) { tell(packed(step)); });
  report.step("while it was loaded");
  ServiceTrial(service, map, scratch, report).run();
}

const char* ruleOf(WorkEnd::Kind kind)
{
  return kind == WorkEnd::Kind::hung ? "hang" : "crash";
}

} // namespace

std::vector<ServiceFinding> checkService(const std::filesystem::path& service, const std::filesystem::path& map,
                                         Progress& progress, std::chrono::seconds patience)
{
  const ScratchFolder scratch("check");
  const auto work = [&](const Tell& tell)
  { tryService(tell, std::filesystem::absolute(service), std::filesystem::absolute(map), scratch.path()); };
  std::vector<ServiceFinding> findings;
  std::string step;
  const auto hear = [&](const std::string& text)
  {
    const Json message = Json::from_cbor(text);
    if (message.is_string())
      step = message.get<std::string>();
    else
      findings.push_back({message.at(0), message.at(1), message.at(2)});
  };
  const WorkEnd end = inOwnProcess(work, hear, Output::standardError, patience, progress);
  if (end.kind != WorkEnd::Kind::done)
    findings.push_back({"", ruleOf(end.kind), end.how + " " + step});
  return findings;
}

} // namespace cli
