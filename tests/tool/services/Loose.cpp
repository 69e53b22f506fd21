// A service that repeats secrets in whatever it says, and whose callbacks do what their value says.
#include <ClientUtils.h>
#include <ServiceDataManagerIfc.h>
#include <ValidatorIfc.h>

#include <csignal>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <unistd.h>

#include "Broken.h"

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

bool behave(const std::string& value)
{
  if (value == "number")
    throw 42;
  if (value == "abort")
    std::abort();
  if (value == "fault")
    std::raise(SIGSEGV);
  if (value == "exit")
    std::exit(9);
  if (value == "hang")
    ::sleep(600);
  if (value == "doze")
    ::sleep(1);
  return true;
}

class Loose : public Broken, private ValidatorIfc
{
public:
  ValidatorIfc* validator() override
  {
    return this;
  }

  void registerCallbacks(ServiceDataManagerIfc& manager) override
  {
    add(manager, "setMode", [](const auto& value, auto&) { return behave(value); });
    add(manager, "setPin",
        [](const auto& value, auto& error)
        {
          error = "not " + value + " nor " + ClientUtils::escapeXMLString(value);
          return value.empty();
        });
    add(manager, "setKey",
        [this](const auto& value, auto&)
        {
          key = value;
          return value != "throw this" ? true : throw std::runtime_error("cannot keep " + value);
        });
    add(manager, "setName",
        [this](const auto& value, auto& error)
        {
          error = value + " would be as " + key;
          return value != key;
        });
    add(manager, "setWord", [this](const auto& value, auto&) { return (word = value, true); });
  }

private:
  std::vector<std::pair<std::string, std::string>> getValidGroupItems(const std::string&) override
  {
    return {{"bell.wordPassword", word}};
  }
  void clearGroup(const std::string&) override
  {
  }
  bool validateGroup(std::string& reason, const std::string&) override
  {
    reason = "no word is " + word;
    return word.empty();
  }
  void reloadGroup(const std::string&) override
  {
  }
  static void add(ServiceDataManagerIfc& manager, const char* name, Take take)
  {
    manager.addSetter({name, std::make_unique<Setter>(std::move(take)).release()});
  }

  std::string key;
  std::string word;
};

} // namespace

SDM_SERVICE(Loose)
