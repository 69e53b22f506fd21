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

/// Somebody else held the database for longer than one waits; the same statement may succeed later.
class BusyDatabase : public Error
{
public:
  using Error::Error;
};

/// The connection is gone, and with it whatever was not committed; a new one may do better.
class LostConnection : public Error
{
public:
  using Error::Error;
};

/// There is no transaction that could end: the database rolled it back by itself.
class NoTransaction : public Error
{
public:
  using Error::Error;
};
} // namespace host
