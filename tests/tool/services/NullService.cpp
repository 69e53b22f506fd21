// A factory that makes nothing.
#include "loadable/Service.h"

extern "C" __attribute__((visibility("default"))) const loadable::ServiceEntry* sdmService()
{
  static const loadable::ServiceEntry entry = {loadable::serviceVersion,
                                               []() -> loadable::Service* { return nullptr; }};
  return &entry;
}
