// A lamp, of which several services are made that differ in one thing.
#pragma once

#include <ServiceDataManagerIfc.h>

#include <memory>
#include <string>

#include "loadable/Service.h"

namespace lamp
{

/// What a setter makes of a level, in place of keeping it.
using Change = std::string (*)(const std::string& level);

class Setter : public ManagedItemSetter
{
public:
  Setter(std::string& itsLevel, Change itsChange) : level(itsLevel), change(itsChange)
  {
  }
  bool setValue(const std::string& value, const std::string&, std::string& error) override
  {
    if (value.size() > 2)
    {
      error = "must have one or two digits";
      return false;
    }
    level = change(value);
    return true;
  }

private:
  std::string& level;
  const Change change;
};

class Getter : public ManagedItemGetter
{
public:
  explicit Getter(const std::string& itsLevel) : level(itsLevel)
  {
  }
  std::string getValue(const std::string&) override
  {
    return level;
  }

private:
  const std::string& level;
};

/// Takes secrets of one length alone.
class KeySetter : public ManagedItemSetter
{
public:
  bool setValue(const std::string& value, const std::string&, std::string& error) override
  {
    if (value.empty() || value.size() == 24)
      return true;
    error = "must have 24 characters";
    return false;
  }
};

template <std::string (*itsChange)(const std::string&)>
class Lamp : public loadable::Service
{
public:
  std::string name() const override
  {
    return "Lamp";
  }
  void registerCallbacks(ServiceDataManagerIfc& manager) override
  {
    manager.addSetter({"setLevel", std::make_unique<Setter>(level, itsChange).release()});
    manager.addGetter({"getLevel", std::make_unique<Getter>(level).release()});
    manager.addSetter({"setKey", std::make_unique<KeySetter>().release()});
    manager.addSetter({"setUnused", std::make_unique<KeySetter>().release()});
  }

private:
  std::string level;
};

} // namespace lamp
