#include "Record.h"

#include <algorithm>
#include <map>
#include <utility>

#include "Trace.h"

namespace
{

void called(const std::string& name)
{
  if (!recording::behaviour().quietRecords)
    recording::called(name);
}

/// `call` begins with the operation's name.
void noteCall(const std::string& call)
{
  if (recording::behaviour().traceRecords && !recording::behaviour().quietRecords)
    recording::note(call);
  called(call.substr(0, call.find('(')));
}

std::string storeName(const LocalMgmtIfc* store)
{
  return store != nullptr ? "store" : "null";
}

} // namespace

struct ManageableData::Content
{
  struct Reject
  {
    std::string rootId;
    std::string name;
    std::string reason;
  };

  std::string rootId;
  std::vector<std::string> rootIds;
  std::map<std::pair<std::string, std::string>, std::string> values;
  std::vector<Reject> rejects;
};

struct ManageableDataContent
{
  static ManageableData::Content& of(const ManageableData& data)
  {
    return *data.content;
  }
};

ManageableData::ManageableData() : content(std::make_unique<Content>())
{
}

ManageableData::~ManageableData() = default;

void ManageableData::setRootId(const std::string& rootId, LocalMgmtIfc* store)
{
  noteCall("setRootId(" + rootId + ", " + storeName(store) + ")");
  content->rootId = rootId;
}

std::string ManageableData::getRootId() const
{
  called("getRootId");
  return content->rootId;
}

void ManageableData::addRootId(const std::string& rootId, LocalMgmtIfc* store)
{
  noteCall("addRootId(" + rootId + ", " + storeName(store) + ")");
  auto& rootIds = content->rootIds;
  if (std::find(rootIds.begin(), rootIds.end(), rootId) == rootIds.end())
    rootIds.push_back(rootId);
}

void ManageableData::getRootIds(std::vector<std::string>& rootIds)
{
  called("getRootIds");
  rootIds.insert(rootIds.end(), content->rootIds.begin(), content->rootIds.end());
}

bool ManageableData::interogate(const std::string& rootId, const std::string& name, std::string& value)
{
  noteCall("interogate(" + rootId + ", " + name + ")" + (value.empty() ? "" : " over " + recording::quoted(value)));
  const auto found = content->values.find({rootId, name});
  value = found == content->values.end() ? "" : found->second;
  if (!recording::behaviour().quietRecords)
    value = recording::answered("interogate", value);
  return found != content->values.end();
}

void ManageableData::populate(const std::string& rootId, const std::string& name, const std::string& value)
{
  noteCall("populate(" + rootId + ", " + name + ", " + value + ")");
  const recording::UntracedRecords untraced;
  content->values[{rootId, name}] = value;
  if (name == rootId)
    addRootId(rootId, nullptr);
}

void ManageableData::addRejectReason(std::string rootId, std::string name, std::string reason)
{
  called("addRejectReason");
  content->rejects.push_back({std::move(rootId), std::move(name), std::move(reason)});
}

bool ManageableData::isRejectListEmpty()
{
  called("isRejectListEmpty");
  return content->rejects.empty();
}

bool ManageableData::areAllRejectReasons(const std::string& reason)
{
  called("areAllRejectReasons");
  return std::all_of(content->rejects.begin(), content->rejects.end(),
                     [&](const Content::Reject& reject) { return reject.reason == reason; });
}

namespace recording
{

std::vector<std::string> rejectReasons(const ManageableData& data)
{
  std::vector<std::string> texts;
  for (const auto& reject : ManageableDataContent::of(data).rejects)
    texts.push_back(reject.rootId + "|" + reject.name + "|" + reject.reason);
  return texts;
}

void repeatRootId(ManageableData& data, const std::string& rootId)
{
  ManageableDataContent::of(data).rootIds.push_back(rootId);
}

UntracedRecords::UntracedRecords() : before(behaviour().quietRecords)
{
  behaviour().quietRecords = true;
}

UntracedRecords::~UntracedRecords()
{
  behaviour().quietRecords = before;
}

std::string describe(ManageableData& data)
{
  const UntracedRecords untraced;
  std::string text = data.getRootId();
  for (const std::string& rootId : ManageableDataContent::of(data).rootIds)
  {
    std::string value;
    const bool known = data.interogate(rootId, rootId, value);
    text += (text.empty() ? "" : ",") + rootId + (known ? "=" + value : "");
  }
  return text;
}

} // namespace recording
