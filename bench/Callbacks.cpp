#include "Callbacks.h"

#include "Workload.h"

namespace bench
{

namespace
{

class Setter : public ManagedItemSetter
{
public:
  bool setValue(const std::string&, const std::string&, std::string&) override
  {
    return true;
  }
};

class Getter : public ManagedItemGetter
{
public:
  std::string getValue(const std::string&) override
  {
    return liveValue;
  }
};

} // namespace

std::unique_ptr<ManagedItemSetter> makeSetter()
{
  return std::make_unique<Setter>();
}

std::unique_ptr<ManagedItemGetter> makeGetter()
{
  return std::make_unique<Getter>();
}

} // namespace bench
