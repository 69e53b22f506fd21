#include "DASElementHandlers.h"

#include "HandleElement.h"

void DASStartElementHandler(void* userData, const char* name, const char** atts)
{
  static_cast<ServiceDataManager*>(userData)->handleElement(&ServiceDataManager::startElementHandler, name, atts);
}

void DASCharacterDataHandler(void* userData, const char* s, int len)
{
  static_cast<ServiceDataManager*>(userData)->handleElement(&ServiceDataManager::characterDataHandler, s, len);
}

void DASEndElementHandler(void* userData, const char* name)
{
  static_cast<ServiceDataManager*>(userData)->handleElement(&ServiceDataManager::endElementHandler, name);
}
