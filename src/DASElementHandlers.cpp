#include "DASElementHandlers.h"

#include "ServiceDataManager/HandleElement.h"

void DASStartElementHandler(void* userData, const char* name, const char** atts)
{
  auto* manager = static_cast<ServiceDataManager*>(userData);
  manager->lockIsHeld();
  manager->handleElement(
      [&]
      {
        manager->lockIsHeld();
        manager->startElementHandler(name, atts);
      });
}

void DASCharacterDataHandler(void* userData, const char* s, int len)
{
  auto* manager = static_cast<ServiceDataManager*>(userData);
  manager->lockIsHeld();
  manager->handleElement(
      [&]
      {
        manager->lockIsHeld();
        manager->characterDataHandler(s, len);
      });
}

void DASEndElementHandler(void* userData, const char* name)
{
  auto* manager = static_cast<ServiceDataManager*>(userData);
  manager->lockIsHeld();
  manager->handleElement(
      [&]
      {
        manager->lockIsHeld();
        manager->endElementHandler(name);
      });
}
