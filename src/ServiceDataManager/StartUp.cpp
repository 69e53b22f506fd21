// The start-up sequence.
#include "Operation.h"

void ServiceDataManager::initialise(const std::string& name)
{
  initialiseWithoutSettingDefaultData(name, "");
}

void ServiceDataManager::initialiseWithoutSettingDefaultData(const std::string& name, const std::string& prefix)
{
  Operation operation(*this);
  // The flag is asked afresh at each stage, since a callback may change it.
  if (startup)
    setAllManagedData(name);
  initialiseCacheItems(prefix);
  operation.groupsAreJudged();
  importFromDAS();
  if (startup)
  {
    subscribeForObservations();
    importFromOCMS();
  }
  if (!startup)
    publishChanges();
}
