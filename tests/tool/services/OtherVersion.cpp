// Built with a header of another time.
#include "host/Service.h"

extern "C" __attribute__((visibility("default"))) const host::ServiceEntry* sdmService()
{
  static const host::ServiceEntry entry = {host::serviceVersion + 1, nullptr};
  return &entry;
}
