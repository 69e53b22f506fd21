// Each request has one answer, and no reason is lost on the way.
#include <exception>
#include <map>

#include <ManageableData.h>
#include <RejectReasonsStrings.h>

#include "Callbacks.h"
#include "Items.h"
#include "Load.h"
#include "Values.h"
#include "host/RejectReasons.h"

namespace threads
{

bool Worker::send(ManageableData& data)
{
  heard() = {};
  bool success = false;
  std::exception_ptr thrown;
  try
  {
    success = manager.setData(data);
  }
  catch (const std::exception&)
  {
    thrown = std::current_exception();
  }
  // A setter that throws ends the operation before anything is refused; a service that does, after that.
  if (!heard().callbackThrew)
    checkAnswer(data, success, thrown != nullptr);
  if (thrown != nullptr)
    std::rethrow_exception(thrown);
  return success;
}

void Worker::checkAnswer(ManageableData& data, bool success, bool thrown)
{
  std::multimap<std::string, std::string> told;
  bool refused = false;
  for (const host::RejectReason& reject : host::rejectReasons(data))
  {
    told.emplace(reject.rootId, reject.reason);
    refused = refused || reject.reason != RejectReasonsStrings::unchanged_data;
  }
  tally.reasons += told.size();
  world.violations.expect(!(success && refused), "a request with refusals succeeded");
  world.violations.expect(!(success && thrown), "a request both threw and succeeded");

  std::vector<std::string> asked;
  data.getRootIds(asked);
  bool bad = false;
  bool group = false;
  std::string request;
  for (const std::string& rootId : asked)
  {
    std::string value;
    data.interogate(rootId, rootId, value);
    checkItem(rootId, value, told);
    const Item* item = findItem(rootId);
    group = group || (item != nullptr && !item->group.empty());
    bad = bad || verbOf(value) == "badgroup";
    request = requestOf(value);
  }
  const bool known = group && heard().setterCalls.size() == asked.size();
  const auto [first, last] = told.equal_range("");
  const bool expected = known && bad;
  world.violations.expect(std::distance(first, last) == (expected ? 1 : 0),
                          request + " lost or invented a group's refusal");
  world.violations.expect(!expected || first == last || first->second == groupRefusalOf(request),
                          request + " got the refusal of another");
}

/// Its setter heard of it once and its reason is there, or nobody knows it and that is there.
void Worker::checkItem(const std::string& rootId, const std::string& value,
                       const std::multimap<std::string, std::string>& told)
{
  const auto [first, last] = told.equal_range(rootId);
  const auto reasons = std::distance(first, last);
  const auto calls = heard().setterCalls.find(rootId + "=" + value);
  if (calls == heard().setterCalls.end())
  {
    ++tally.itemsUnknown;
    world.violations.expect(reasons == 1 && first->second == "unknown item",
                            value + " for " + rootId + " got no answer");
    return;
  }
  ++tally.itemsSet;
  const std::string reason = refusalOf(value);
  world.violations.expect(calls->second == 1, "the setter of " + rootId + " heard more than once of " + value);
  world.violations.expect(reasons == (reason.empty() ? 0 : 1),
                          value + " for " + rootId + " lost its reason, or got one");
  world.violations.expect(reasons != 1 || first->second == reason, value + " for " + rootId + " got another's reason");
}

} // namespace threads
