// Built with a header of another time.
#include "loadable/Service.h"

extern "C" __attribute__((visibility("default"))) const loadable::ServiceEntry* sdmService()
{
  static const loadable::ServiceEntry entry = {loadable::serviceVersion + 1, nullptr};
  return &entry;
}
