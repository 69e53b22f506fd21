// Freeing what a running operation may still point at.
#pragma once

#include <utility>

#include "ServiceDataManager.h"

/// An object of any type, as all types are retired alike.
template <typename Object>
ServiceDataManager::Retired ServiceDataManager::ofAnyType(Object* object)
{
  return Retired(object, [](void* old) { std::default_delete<Object>()(static_cast<Object*>(old)); });
}

template <typename Object>
void ServiceDataManager::retire(std::unique_ptr<Object> object)
{
  retire(ofAnyType(object.release()));
}
