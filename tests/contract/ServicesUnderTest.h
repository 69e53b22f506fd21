// What a platform gives to the tests of its services so that they can run on it.
#pragma once

#include <DataAccessServiceIfc.h>
#include <LocalMgmtIfc.h>

#include <memory>
#include <string>

#include "PlatformUnderTest.h"

namespace contract
{
/// A device with nothing stored, except for the schemas "Plain" (columns "A" and "B") and "Rows" (index column "Idx",
/// columns "A" and "B", no rows).
class Services : public Platform
{
public:
  virtual DataAccessServiceIfc& das() = 0;
  virtual LocalMgmtIfc& store() = 0;

  /// Changes a value of the store from outside.
  virtual void change(const std::string& rootId, const std::string& value) = 0;
  /// Defines a dictionary of one item, whose root id is `rootId`.
  virtual void defineDictionary(const std::string& name, const std::string& rootId) = 0;
  /// Makes `checkData` object to an item.
  virtual void lockItem(const std::string& rootId) = 0;
};

std::unique_ptr<Services> makeServices();
} // namespace contract
