// An entry point that has nothing to say.
#include "loadable/Service.h"

extern "C" __attribute__((visibility("default"))) const loadable::ServiceEntry* sdmService()
{
  return nullptr;
}
