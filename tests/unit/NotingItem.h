// An item that tells of its end.
#pragma once

#include "ServiceDataManagerIfc.h"
#include "Services.h"
#include "Trace.h"

namespace unit
{

class NotingItem : public ManagedDataItem
{
public:
  explicit NotingItem(const std::string& name, recording::Hook onDelete = nullptr) : hook(std::move(onDelete))
  {
    rootId = name;
  }

  ~NotingItem() override
  {
    recording::note("delete item " + rootId);
    if (hook)
      hook();
  }

  NotingItem(const NotingItem&) = delete;
  NotingItem& operator=(const NotingItem&) = delete;

private:
  recording::Hook hook;
};

} // namespace unit
