// Freeing what a running operation may still point at.
#pragma once

#include <utility>

#include "ServiceDataManager.h"

/// Frees the object at once, or at the end of the outermost operation when one is running.
template <typename Object>
void ServiceDataManager::retire(std::unique_ptr<Object> object)
{
  if (object != nullptr && runningOperations > 0)
    retired.push_back(
        Retired(object.release(), [](void* old) { std::default_delete<Object>()(static_cast<Object*>(old)); }));
}
