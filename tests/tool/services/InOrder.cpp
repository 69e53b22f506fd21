// A service to which the order of a request matters: the setter of the upper end looks at the lower end that came
// before.
#include <ServiceDataManagerIfc.h>
#include <ValidatorIfc.h>

#include <cstdlib>
#include <map>

#include "host/Faults.h"
#include "loadable/Service.h"

namespace
{

using Ends = std::map<std::string, std::string>;

class Range : public ValidatorIfc
{
public:
  std::vector<std::pair<std::string, std::string>> getValidGroupItems(const std::string&) override
  {
    return {pending.begin(), pending.end()};
  }
  void clearGroup(const std::string&) override
  {
    pending.clear();
  }
  bool validateGroup(std::string&, const std::string&) override
  {
    for (const auto& [rootId, value] : pending)
      current[rootId] = value;
    return true;
  }
  void reloadGroup(const std::string&) override
  {
  }
  std::string end(const std::string& rootId)
  {
    const auto found = pending.find(rootId);
    return found == pending.end() ? current[rootId] : found->second;
  }

  Ends pending;
  Ends current;
};

/// The upper end that the database does not take when it came before the lower one.
constexpr const char* refusedAlone = "66";

void refuseUpdates()
{
  host::Fault fault;
  fault.place = host::FaultPlace::das;
  fault.kind = host::FaultKind::refused;
  host::setFault(fault);
}

class End : public ManagedItemSetter
{
public:
  End(Range& itsRange, const char* itsRootId, bool isUpper) : range(itsRange), rootId(itsRootId), upper(isUpper)
  {
  }
  bool setValue(const std::string& value, const std::string&, std::string& error) override
  {
    const std::string lower = range.end("range.low");
    if (upper && std::atoi(value.c_str()) < std::atoi(lower.c_str()))
    {
      error = "is below " + lower;
      return false;
    }
    if (upper && value == refusedAlone && range.pending.count("range.low") == 0)
      refuseUpdates();
    range.pending[rootId] = value;
    return true;
  }

private:
  Range& range;
  const std::string rootId;
  const bool upper;
};

class InOrder : public loadable::Service
{
public:
  std::string name() const override
  {
    return "InOrder";
  }
  ValidatorIfc* validator() override
  {
    return &range;
  }
  void registerCallbacks(ServiceDataManagerIfc& manager) override
  {
    manager.addSetter({"setLow", std::make_unique<End>(range, "range.low", false).release()});
    manager.addSetter({"setHigh", std::make_unique<End>(range, "range.high", true).release()});
  }

private:
  Range range;
};

} // namespace

SDM_SERVICE(InOrder)
