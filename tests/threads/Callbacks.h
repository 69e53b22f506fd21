// The callbacks of the load: they do what the value tells them.
#pragma once

#include <string>

#include <ServiceDataManagerIfc.h>

#include "Items.h"
#include "World.h"

namespace threads
{

class Setter : public ManagedItemSetter
{
public:
  Setter(World& itsWorld, const Item& itsItem) : world(itsWorld), item(itsItem)
  {
  }
  bool setValue(const std::string& value, const std::string& indexValue, std::string& error) override;

private:
  void take(const std::string& value);
  void callBack();
  void renew();

  World& world;
  const Item& item;
};

class Getter : public ManagedItemGetter
{
public:
  Getter(World& itsWorld, const Item& itsItem) : world(itsWorld), item(itsItem)
  {
  }
  std::string getValue(const std::string& indexValue) override;

private:
  World& world;
  const Item& item;
};

/// The reason with which a setter refuses a value.
std::string refusalOf(const std::string& value);

/// The reason with which the validator refuses a group with values of a request.
std::string groupRefusalOf(const std::string& request);

} // namespace threads
