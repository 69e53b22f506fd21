// The management record: one entry for each item, at the place that the number in its root id gives.
#include <ManageableData.h>

#include "Dictionary.h"
#include "Numbers.h"
#include "Platform.h"

struct ManageableData::Content
{
  struct Entry
  {
    std::string value;
    bool isListed = false;
    bool hasValue = false;
  };

  std::string ownRootId;
  std::vector<std::string> rootIds;
  /// By name alone, since no name here belongs to two root ids.
  std::vector<Entry> entries;
  std::vector<std::string> reasons;

  void list(Entry& entry, const std::string& rootId)
  {
    if (entry.isListed)
      return;
    entry.isListed = true;
    rootIds.push_back(rootId);
  }
};

struct ManageableDataContent
{
  using Content = ManageableData::Content;

  /// The content of the record that ended last, empty but for its room: what the heap makes of large blocks that come
  /// and go depends on all that happened before.
  static std::unique_ptr<Content>& spare()
  {
    static std::unique_ptr<Content> kept;
    return kept;
  }

  static std::unique_ptr<Content> make()
  {
    return spare() != nullptr ? std::move(spare()) : std::make_unique<Content>();
  }
};

ManageableData::ManageableData() : content(ManageableDataContent::make())
{
}

ManageableData::~ManageableData()
{
  content->ownRootId.clear();
  content->rootIds.clear();
  content->entries.clear();
  content->reasons.clear();
  std::swap(ManageableDataContent::spare(), content);
}

void ManageableData::setRootId(const std::string& rootId, LocalMgmtIfc*)
{
  content->ownRootId = rootId;
}

std::string ManageableData::getRootId() const
{
  return content->ownRootId;
}

void ManageableData::addRootId(const std::string& rootId, LocalMgmtIfc*)
{
  content->list(bench::entryAt(content->entries, bench::numberAtEnd(rootId)), rootId);
}

void ManageableData::getRootIds(std::vector<std::string>& rootIds)
{
  rootIds.insert(rootIds.end(), content->rootIds.begin(), content->rootIds.end());
}

bool ManageableData::interogate(const std::string& rootId, const std::string& name, std::string& value)
{
  const std::string* found = nullptr;
  if (rootId == bench::dictionaryName)
    found = bench::Dictionary::current() != nullptr ? bench::Dictionary::current()->find(name) : nullptr;
  else if (const std::size_t number = bench::numberAtEnd(name); number < content->entries.size())
    found = content->entries[number].hasValue ? &content->entries[number].value : nullptr;
  if (found == nullptr)
    value.clear();
  else
    value = *found;
  return found != nullptr;
}

void ManageableData::populate(const std::string& rootId, const std::string& name, const std::string& value)
{
  Content::Entry& entry = bench::entryAt(content->entries, bench::numberAtEnd(name));
  entry.value = value;
  entry.hasValue = true;
  if (name == rootId)
    content->list(entry, rootId);
}

void ManageableData::addRejectReason(std::string, std::string, std::string reason)
{
  content->reasons.push_back(std::move(reason));
}

bool ManageableData::isRejectListEmpty()
{
  return content->reasons.empty();
}

bool ManageableData::areAllRejectReasons(const std::string& reason)
{
  for (const std::string& given : content->reasons)
  {
    if (given != reason)
      return false;
  }
  return true;
}
