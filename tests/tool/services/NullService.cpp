// A factory that makes nothing.
#include "host/Service.h"

extern "C" __attribute__((visibility("default"))) const host::ServiceEntry* sdmService()
{
  static const host::ServiceEntry entry = {host::serviceVersion, []() -> host::Service* { return nullptr; }};
  return &entry;
}
