// Operations and callbacks of a real manager, by their names, seen from the lock and from the account of durations.
#include "service/WatchedManager.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <ostream>
#include <stdexcept>
#include <thread>

#include <LocalMgmtIfc.h>
#include <ManageableData.h>
#include <SvcRTEContext.h>
#include <ValidatorIfc.h>

#include "host/CallTimes.h"
#include "host/DeviceLog.h"
#include "host/LockWatch.h"
#include "service/CallListeners.h"
#include "service/MarkListener.h"

namespace
{

using std::chrono::milliseconds;

/// Waits for what happens soon, unless something is broken.
bool happens(const std::function<bool()>& what)
{
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!what() && std::chrono::steady_clock::now() < end)
    std::this_thread::sleep_for(milliseconds(1));
  return what();
}

/// Counts the objects that are left, and does what it is told within a call.
class Setter : public ManagedItemSetter
{
public:
  explicit Setter(int& count) : left(count)
  {
    ++left;
  }
  ~Setter() override
  {
    --left;
  }
  bool setValue(const std::string&, const std::string&, std::string& error) override
  {
    error = "no";
    if (within)
      within();
    return false;
  }
  std::function<void()> within;

private:
  int& left;
};

class Getter : public ManagedItemGetter
{
public:
  std::string getValue(const std::string& indexValue) override
  {
    return "value " + indexValue;
  }
};

class Validator : public ValidatorIfc
{
public:
  std::vector<std::pair<std::string, std::string>> getValidGroupItems(const std::string&) override
  {
    return {};
  }
  void clearGroup(const std::string&) override
  {
  }
  bool validateGroup(std::string& reason, const std::string&) override
  {
    reason = "not together";
    return false;
  }
  void reloadGroup(const std::string&) override
  {
  }
};

class NoServices : public SvcRTEContext
{
public:
  Executable* findService(const std::string&) override
  {
    return nullptr;
  }
};

/// A manager with one item in a group, in a folder of its own.
class WatchedManager : public testing::Test
{
protected:
  WatchedManager()
  {
    std::string pattern = (std::filesystem::temp_directory_path() / "watchXXXXXX").string();
    folder = ::mkdtemp(pattern.data());
    std::filesystem::current_path(folder);
    std::ofstream("CommsSettings.csv") << "banner,Prefs,Banner,,7,hello,setBanner,getBanner,,Pair,,\n";
    host::openLog({folder / "device.log", 0, 6});
    manager->setup(&context, nullptr, "Service", &validator);
    setter = new Setter(left);
    manager->addSetter({"setBanner", setter});
    manager->addGetter({"getBanner", new Getter});
    host::forgetCallTimes();
  }
  ~WatchedManager() override
  {
    manager->deleteSetters();
    manager->deleteGetters();
    manager.reset();
    host::setSlowWait(milliseconds(1000));
    host::closeLog();
    std::filesystem::current_path("/");
    std::filesystem::remove_all(folder);
  }

  static std::map<std::string, std::uint64_t> calls()
  {
    std::map<std::string, std::uint64_t> counts;
    for (const host::CallTime& time : host::callTimes())
      counts[time.name] = time.calls;
    return counts;
  }
  static host::LockUser holder()
  {
    const auto reports = host::lockReports();
    return reports.empty() || reports.front().holders.empty() ? host::LockUser() : reports.front().holders.front();
  }
  std::string log() const
  {
    std::ifstream file(folder / "device.log");
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void set()
  {
    ManageableData data;
    data.populate("banner", "banner", "hi");
    manager->setData(data);
  }

  std::filesystem::path folder;
  NoServices context;
  Validator validator;
  int left = 0;
  Setter* setter = nullptr;
  cli::MarkListener marks;
  std::unique_ptr<ServiceDataManagerIfc> manager = std::make_unique<cli::WatchedManager>(marks);
};

} // namespace

TEST_F(WatchedManager, CallbacksAreCountedByTheNamesThatItemMapsUse)
{
  manager->initialise("CommsItemMap");
  const auto counts = calls();
  EXPECT_EQ(counts.at("setBanner"), 1U);
  EXPECT_EQ(counts.at("getBanner"), 1U);
  EXPECT_GE(counts.at("validator Pair"), 1U);
}

TEST_F(WatchedManager, HolderIsKnownByOperationAndCallback)
{
  manager->initialise("CommsItemMap");
  host::LockUser seen;
  setter->within = [&] { seen = holder(); };
  set();
  EXPECT_EQ(seen.operation, "setData");
  EXPECT_EQ(seen.callback, "setBanner");
  manager->initialiseWithoutSettingDefaultData("CommsItemMap", "");
  EXPECT_EQ(seen.operation, "initialiseWithoutSettingDefaultData");
  EXPECT_EQ(holder().operation, "");
}

TEST_F(WatchedManager, SlowCallbackIsNamedToTheOneThatWaitsForIt)
{
  manager->initialise("CommsItemMap");
  host::setSlowWait(milliseconds(50));
  std::atomic<bool> inside{false};
  setter->within = [&]
  {
    inside = true;
    std::this_thread::sleep_for(milliseconds(150));
  };
  std::thread slow([this] { set(); });
  EXPECT_TRUE(happens([&] { return inside.load(); }));
  manager->getItem("banner");
  slow.join();
  EXPECT_NE(log().find("getItem (thread "), std::string::npos) << log();
  EXPECT_NE(log().find("held by setData in callback setBanner (thread "), std::string::npos) << log();
}

TEST_F(WatchedManager, CallbackThatCallsBackWaitsForNobody)
{
  manager->initialise("CommsItemMap");
  host::setSlowWait(milliseconds(1));
  setter->within = [&]
  {
    std::this_thread::sleep_for(milliseconds(20));
    manager->getPublishedItem("banner");
  };
  set();
  EXPECT_EQ(log().find("has waited"), std::string::npos) << log();
}

TEST_F(WatchedManager, WhatCallbacksAnswerIsPassedOn)
{
  manager->initialise("CommsItemMap");
  const ManagedDataItem* item = manager->getPublishedItem("banner");
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(item->getter->getValue("7"), "value 7");
  std::string error;
  EXPECT_FALSE(item->setter->setValue("x", "7", error));
  EXPECT_EQ(error, "no");
  EXPECT_NE(log().find("not together"), std::string::npos);
}

TEST_F(WatchedManager, CallbackThatThrowsIsOverForWhoeverAsks)
{
  manager->initialise("CommsItemMap");
  setter->within = [] { throw 7; };
  EXPECT_THROW(set(), std::runtime_error);
  EXPECT_EQ(holder().callback, "");
  host::LockUser seen;
  setter->within = [&] { seen = holder(); };
  manager->initialise("CommsItemMap");
  EXPECT_EQ(seen.operation, "initialise");
}

namespace
{

/// Writes down the ends of setters under its name.
class Scribe : public cli::CallListener
{
public:
  Scribe(std::string itsName, std::string& text) : name(std::move(itsName)), notes(text)
  {
  }
  void setterBegins(const cli::SetterCall& call) override
  {
    notes += name + " begins " + call.setter + "\n";
  }
  void setterEnded(const cli::SetterCall& call) override
  {
    notes += name + " ended " + call.setter + " " + call.thrown.value_or(call.reason) + "\n";
  }

private:
  const std::string name;
  std::string& notes;
};

} // namespace

TEST(CallListeners, HearOfEndsTheOtherWayRoundThrownOrNot)
{
  std::string notes;
  Scribe outer("outer", notes);
  Scribe inner("inner", notes);
  cli::CallListeners both;
  both.add(outer);
  both.add(inner);
  int left = 0;
  const auto real = std::make_shared<Setter>(left);
  cli::WatchedSetter setter("setBanner", real, both);
  std::string error;
  EXPECT_FALSE(setter.setValue("x", "", error));
  real->within = [] { throw std::runtime_error("broken"); };
  EXPECT_THROW(setter.setValue("x", "", error), std::runtime_error);
  EXPECT_EQ(notes, "outer begins setBanner\ninner begins setBanner\ninner ended setBanner no\n"
                   "outer ended setBanner no\nouter begins setBanner\ninner begins setBanner\n"
                   "inner ended setBanner broken\nouter ended setBanner broken\n");
}

TEST_F(WatchedManager, TakenNameLeavesTheSecondCallbackWithItsOwner)
{
  {
    Setter mine(left);
    manager->addSetter({"setBanner", &mine});
    EXPECT_EQ(left, 2);
  }
  EXPECT_EQ(left, 1);
  manager->deleteSetters();
  EXPECT_EQ(left, 0);
}

TEST_F(WatchedManager, ObjectWithTwoNamesIsDeletedOnce)
{
  manager->addSetter({"setAlias", setter});
  manager->deleteSetters();
  EXPECT_EQ(left, 0);
  manager->addSetter({"setBanner", new Setter(left)});
  EXPECT_EQ(left, 1);
}

TEST_F(WatchedManager, NamesWithoutCallbacksStayWithoutCallbacks)
{
  manager->addSetter({"setNothing", nullptr});
  manager->addSetter({nullptr, nullptr});
  std::ofstream("CommsSettings.csv") << "nothing,Prefs,Nothing,,,hello,setNothing,,,,,\n";
  manager->initialise("CommsItemMap");
  EXPECT_EQ(manager->getPublishedItem("nothing")->setter, nullptr);
}

namespace
{

struct OperationCase
{
  const char* name;
  void (*run)(ServiceDataManagerIfc& manager);
};

/// Names the case in reports, where GoogleTest would show bytes.
void PrintTo(const OperationCase& each, std::ostream* out)
{
  *out << each.name;
}

void withRecord(ServiceDataManagerIfc& manager, bool (ServiceDataManagerIfc::*operation)(ManageableData&))
{
  ManageableData data;
  (manager.*operation)(data);
}

const OperationCase operationCases[] = {
    {"initialise", [](ServiceDataManagerIfc& m) { m.initialise("none"); }},
    {"initialiseWithoutSettingDefaultData",
     [](ServiceDataManagerIfc& m) { m.initialiseWithoutSettingDefaultData("none", ""); }},
    {"setData", [](ServiceDataManagerIfc& m) { withRecord(m, &ServiceDataManagerIfc::setData); }},
    {"getData", [](ServiceDataManagerIfc& m) { withRecord(m, &ServiceDataManagerIfc::getData); }},
    {"manageableDataChanged",
     [](ServiceDataManagerIfc& m)
     {
       ManageableData data;
       m.manageableDataChanged(data);
     }},
    {"addGetter",
     [](ServiceDataManagerIfc& m) {
       m.addGetter({"none", nullptr});
     }},
    {"addSetter",
     [](ServiceDataManagerIfc& m) {
       m.addSetter({"none", nullptr});
     }},
    {"getItem", [](ServiceDataManagerIfc& m) { m.getItem("none"); }},
    {"getPublishedItem", [](ServiceDataManagerIfc& m) { m.getPublishedItem("none"); }},
    {"clearAllManagedData", [](ServiceDataManagerIfc& m) { m.clearAllManagedData(); }},
    {"setDefaultUserData", [](ServiceDataManagerIfc& m) { m.setDefaultUserData(); }},
    {"importItemFromDAS",
     [](ServiceDataManagerIfc& m)
     {
       std::string value;
       m.importItemFromDAS("none", value);
     }},
    {"deleteGetters", [](ServiceDataManagerIfc& m) { m.deleteGetters(); }},
    {"deleteSetters", [](ServiceDataManagerIfc& m) { m.deleteSetters(); }},
    {"reloadUserData", [](ServiceDataManagerIfc& m) { m.reloadUserData(); }},
};

class WatchedOperation : public WatchedManager, public testing::WithParamInterface<OperationCase>
{
};

} // namespace

TEST_P(WatchedOperation, IsKnownByItsNameWhileItWaits)
{
  manager->initialise("CommsItemMap");
  std::atomic<bool> release{false};
  setter->within = [&]
  {
    while (!release)
      std::this_thread::yield();
  };
  std::thread slow([this] { set(); });
  EXPECT_TRUE(happens([] { return holder().callback == "setBanner"; }));
  std::thread waiting([this] { GetParam().run(*manager); });
  std::vector<host::LockUser> waiters;
  EXPECT_TRUE(happens(
      [&]
      {
        waiters = host::lockReports().front().waiters;
        return !waiters.empty();
      }));
  release = true;
  slow.join();
  waiting.join();
  ASSERT_EQ(waiters.size(), 1U);
  EXPECT_EQ(waiters.front().operation, GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(All, WatchedOperation, testing::ValuesIn(operationCases),
                         [](const auto& each) { return std::string(each.param.name); });

namespace
{

/// As a static device, which takes its service down when the process ends.
class CallsAtTheEnd
{
public:
  CallsAtTheEnd() = default;
  ~CallsAtTheEnd()
  {
    callOnce();
  }
  CallsAtTheEnd(const CallsAtTheEnd&) = delete;
  CallsAtTheEnd& operator=(const CallsAtTheEnd&) = delete;

  static void callOnce()
  {
    cli::MarkListener marks;
    const cli::OperationCall call = {"deleteSetters", {}, nullptr, true};
    marks.operationBegins(call);
    marks.operationEnded(call, {});
  }
};

[[noreturn]] void endWithAStaticDevice()
{
  static const CallsAtTheEnd device;
  CallsAtTheEnd::callOnce();
  std::exit(0);
}

} // namespace

TEST(MarksOfAThread, ServeADeviceThatGoesAwayWithTheProcess)
{
  EXPECT_EXIT(endWithAStaticDevice(), testing::ExitedWithCode(0), "");
}
