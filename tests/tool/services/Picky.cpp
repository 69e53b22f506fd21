// A service whose callbacks are wrong in ways of their own, by their names.
#include <RejectReasonsStrings.h>
#include <ServiceDataManagerIfc.h>
#include <ValidatorIfc.h>

#include <cctype>
#include <csignal>
#include <functional>
#include <map>
#include <stdexcept>
#include <unistd.h>

#include "loadable/Service.h"

namespace
{

using Take = std::function<bool(const std::string& value, std::string& error)>;

class Setter : public ManagedItemSetter
{
public:
  explicit Setter(Take itsTake) : take(std::move(itsTake))
  {
  }
  bool setValue(const std::string& value, const std::string&, std::string& error) override
  {
    return take(value, error);
  }

private:
  Take take;
};

class Getter : public ManagedItemGetter
{
public:
  explicit Getter(std::function<std::string()> itsRead) : read(std::move(itsRead))
  {
  }
  std::string getValue(const std::string&) override
  {
    return read();
  }

private:
  std::function<std::string()> read;
};

/// Accepts a pair of equal values.
class Pair : public ValidatorIfc
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
  bool validateGroup(std::string& reason, const std::string&) override
  {
    reason = "they differ";
    return pending["bell.first"] == pending["bell.second"];
  }
  void reloadGroup(const std::string&) override
  {
  }

  std::map<std::string, std::string> pending;
};

class Picky : public loadable::Service
{
public:
  std::string name() const override
  {
    return "Picky";
  }
  ValidatorIfc* validator() override
  {
    return &pair;
  }
  void registerCallbacks(ServiceDataManagerIfc& manager) override;

private:
  void addSetter(ServiceDataManagerIfc& manager, const char* name, Take take)
  {
    manager.addSetter({name, std::make_unique<Setter>(std::move(take)).release()});
  }
  void addGetter(ServiceDataManagerIfc& manager, const char* name, std::function<std::string()> read)
  {
    manager.addGetter({name, std::make_unique<Getter>(std::move(read)).release()});
  }
  bool takeDigit(const std::string& value, std::string& error)
  {
    error = value.size() == 1 && std::isdigit(static_cast<unsigned char>(value[0])) != 0 ? "" : "must be one digit";
    if (error.empty())
      digit = value;
    return error.empty();
  }

  std::string digit;
  std::string upper;
  Pair pair;
};

std::string throwing()
{
  throw std::runtime_error("the amplifier is off");
}

void Picky::registerCallbacks(ServiceDataManagerIfc& manager)
{
  addSetter(manager, "setDigit", [this](const auto& value, auto& error) { return takeDigit(value, error); });
  addGetter(manager, "getDigit", [this] { return digit; });
  addSetter(manager, "setOnce",
            [](const auto&, auto& error)
            {
              error = RejectReasonsStrings::not_changed;
              return false;
            });
  addSetter(manager, "setEcho",
            [](const auto& value, auto& error)
            {
              error = value + " is none";
              return value.empty();
            });
  addSetter(manager, "setUpper",
            [this](const auto& value, auto&)
            {
              upper.clear();
              for (const char c : value)
                upper += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
              return true;
            });
  addGetter(manager, "getUpper", [this] { return upper; });
  addSetter(manager, "setThrowing", [](const auto&, auto&) { return throwing().empty(); });
  addGetter(manager, "getThrowing", throwing);
  addSetter(manager, "setCrash", [](const auto& value, auto&) { return value != "crash" || std::raise(SIGKILL) != 0; });
  addSetter(manager, "setHang", [](const auto& value, auto&) { return value != "hang" || ::sleep(600) == 0; });
  for (const char* member : {"first", "second"})
  {
    const std::string rootId = std::string("bell.") + member;
    const std::string name = member == std::string("first") ? "setFirst" : "setSecond";
    addSetter(manager, name.c_str(),
              [this, rootId](const auto& value, auto&)
              {
                pair.pending[rootId] = value;
                return true;
              });
  }
}

} // namespace

SDM_SERVICE(Picky)
