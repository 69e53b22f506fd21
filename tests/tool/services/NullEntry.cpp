// An entry point that has nothing to say.
#include "host/Service.h"

extern "C" __attribute__((visibility("default"))) const host::ServiceEntry* sdmService()
{
  return nullptr;
}
