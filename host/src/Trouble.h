// The errors that a device can do something about.
#pragma once

#include "host/Error.h"

namespace host
{
/// The file's content is none that can be worked with; another one can take its place.
class DamagedFile : public Error
{
public:
  using Error::Error;
};

/// The disk takes no changes, be it full or not to be written; what is on it may be fine.
class DiskTrouble : public Error
{
public:
  using Error::Error;
};
} // namespace host
