// The records that carry one operation's work. Their destructors are virtual, so the copies and moves that a
// vector needs are spelled out.
#include <utility>

#include "ServiceDataManager.h"

ServiceDataManager::SetDataBlob::SetDataBlob(std::string requestedRootId, std::string requestedValue,
                                             ManagedDataItem* publishedItem)
    : rootId(std::move(requestedRootId)), value(std::move(requestedValue)), item(publishedItem)
{
}

ServiceDataManager::SetDataBlob::~SetDataBlob() = default;
ServiceDataManager::SetDataBlob::SetDataBlob(const SetDataBlob&) = default;
ServiceDataManager::SetDataBlob::SetDataBlob(SetDataBlob&&) noexcept = default;
ServiceDataManager::SetDataBlob& ServiceDataManager::SetDataBlob::operator=(const SetDataBlob&) = default;
ServiceDataManager::SetDataBlob& ServiceDataManager::SetDataBlob::operator=(SetDataBlob&&) noexcept = default;

ServiceDataManager::GroupDataBlob::GroupDataBlob(std::string group, bool accepted, std::string refusal)
    : groupName(std::move(group)), valid(accepted), reason(std::move(refusal))
{
}

ServiceDataManager::GroupDataBlob::~GroupDataBlob() = default;
ServiceDataManager::GroupDataBlob::GroupDataBlob(const GroupDataBlob&) = default;
ServiceDataManager::GroupDataBlob::GroupDataBlob(GroupDataBlob&&) noexcept = default;
ServiceDataManager::GroupDataBlob& ServiceDataManager::GroupDataBlob::operator=(const GroupDataBlob&) = default;
ServiceDataManager::GroupDataBlob& ServiceDataManager::GroupDataBlob::operator=(GroupDataBlob&&) noexcept = default;
