// Failures on demand: what is met, how often, and that nothing is carried out meanwhile.
#include "host/Faults.h"

#include <DasCrypt.h>
#include <ManageableData.h>

#include <atomic>
#include <chrono>
#include <list>
#include <thread>
#include <vector>

#include "DasFixture.h"
#include "host/FaultyServices.h"
#include "host/KeyFile.h"
#include "host/LocalMgmtStore.h"
#include "host/RuntimeContext.h"
#include "host/SecurityLogService.h"

namespace
{
using host::Fault;
using host::FaultKind;
using host::FaultPlace;
using hosttest::errorOf;
using hosttest::holds;

class Faults : public hosttest::DasFixture
{
protected:
  ~Faults() override
  {
    host::endFaults();
  }
  static void set(FaultPlace place, FaultKind kind, std::optional<std::uint64_t> calls = std::nullopt)
  {
    host::setFault({place, kind, calls});
  }
  std::optional<std::string> stored()
  {
    return das.storedCell("Plain", "A", "", "");
  }
  std::string read(const std::string& schema)
  {
    return hosttest::send(faultyDas, hosttest::readRequest(schema));
  }
  std::string update(const std::string& schema, const std::string& rest)
  {
    return hosttest::send(faultyDas, hosttest::updateRequest(schema, rest));
  }
  std::string changed()
  {
    return update("Plain", "<A>new</A>");
  }

  const std::string written = hosttest::updateReply("Plain");
  host::FaultyDataAccessService faultyDas{das};
};
} // namespace

TEST_F(Faults, AreMetForSoManyCallsAndNoMore)
{
  set(FaultPlace::das, FaultKind::empty, 2);
  EXPECT_EQ(changed(), "");
  EXPECT_EQ(host::faults().at(0).calls, 1U);
  EXPECT_EQ(changed(), "");
  EXPECT_TRUE(host::faults().empty());
  EXPECT_EQ(changed(), written);
}

TEST_F(Faults, AreMetUntilTheyAreEnded)
{
  set(FaultPlace::das, FaultKind::empty);
  for (int i = 0; i < 5; ++i)
    EXPECT_EQ(changed(), "");
  host::endFaults();
  EXPECT_EQ(changed(), written);
}

TEST_F(Faults, TakeThePlaceOfEarlierOnesOfTheSamePlace)
{
  set(FaultPlace::das, FaultKind::empty);
  set(FaultPlace::disk, FaultKind::full);
  set(FaultPlace::das, FaultKind::refused);
  ASSERT_EQ(host::faults().size(), 2U);
  EXPECT_EQ(changed(), hosttest::errorReply("Plain", "refused on demand"));
  set(FaultPlace::das, FaultKind::refused, 0);
  EXPECT_EQ(host::faults().size(), 1U);
}

TEST_F(Faults, CarryOutNoRequestThatIsNotAnsweredAsDone)
{
  for (const FaultKind kind : {FaultKind::empty, FaultKind::malformed, FaultKind::refused, FaultKind::wrongKind})
  {
    set(FaultPlace::das, kind);
    EXPECT_NE(changed(), written);
    EXPECT_EQ(stored(), std::nullopt);
  }
}

TEST_F(Faults, GiveTheReplyOfTheOtherKind)
{
  set(FaultPlace::das, FaultKind::wrongKind);
  EXPECT_EQ(changed(), hosttest::readReply("Plain", ""));
  EXPECT_EQ(read("Plain"), written);
}

TEST_F(Faults, CutAMalformedReplyBeforeAnyValue)
{
  changed();
  set(FaultPlace::das, FaultKind::malformed);
  const std::string reply = read("Plain");
  EXPECT_TRUE(holds(reply, "read_response</ReasonForMessage>"));
  EXPECT_FALSE(holds(reply, "new"));
  EXPECT_FALSE(holds(reply, "</Schema>"));
}

TEST_F(Faults, LetASlowRequestBeCarriedOutLater)
{
  host::setFault({FaultPlace::das, FaultKind::slow, 1, std::chrono::milliseconds(30)});
  const auto began = std::chrono::steady_clock::now();
  EXPECT_EQ(changed(), written);
  EXPECT_GE(std::chrono::steady_clock::now() - began, std::chrono::milliseconds(30));
  EXPECT_EQ(stored(), "new");
}

TEST_F(Faults, HideAServiceFromThoseWhoLookForIt)
{
  host::RuntimeContext real;
  real.offer("DataAccessServiceIfc", &das);
  host::FaultyContext context(real);
  set(FaultPlace::das, FaultKind::absent, 1);
  EXPECT_EQ(changed(), written) << "who found it before keeps it";
  EXPECT_EQ(context.findService("DataAccessServiceIfc"), nullptr);
  EXPECT_EQ(context.findService("DataAccessServiceIfc"), &das);
}

TEST_F(Faults, HideNoOtherService)
{
  host::RuntimeContext real;
  host::SecurityLogService log(folder / "security.log");
  real.offer("SecurityLogServiceIfc", &log);
  host::FaultyContext context(real);
  set(FaultPlace::das, FaultKind::absent);
  set(FaultPlace::store, FaultKind::absent);
  EXPECT_EQ(context.findService("SecurityLogServiceIfc"), &log);
}

TEST_F(Faults, LetEncryptionFailAsItsContractSays)
{
  host::useKeyFile(folder / "key");
  std::string text;
  ASSERT_TRUE(DasCrypt::toEncryptedText("secret", text));
  std::string out = "plain";
  set(FaultPlace::encryption, FaultKind::fails, 2);
  EXPECT_FALSE(DasCrypt::toEncryptedText("secret", out));
  const std::string notEncrypted = "<NotEncrypted>encryption fails on demand</NotEncrypted>";
  EXPECT_EQ(out, notEncrypted);
  EXPECT_FALSE(DasCrypt::fromEncryptedText(text, out));
  EXPECT_EQ(out, notEncrypted);
  EXPECT_TRUE(DasCrypt::fromEncryptedText(text, out));
  EXPECT_EQ(out, "secret");
  host::forgetKey();
}

TEST_F(Faults, LetNothingThatWasNotEncryptedTakeThePlaceOfWhatIsStored)
{
  for (const char* rest : {"<A>%</A>", "<A>kept</A><B>%</B>", "<B>new</B><A>%</A>"})
  {
    update("Plain", "<A>kept</A>");
    std::string cell;
    set(FaultPlace::encryption, FaultKind::fails, 1);
    DasCrypt::toEncryptedText("secret", cell);
    std::string cells = rest;
    cells.replace(cells.find('%'), 1, cell);
    const std::string reply = update("Plain", cells);
    EXPECT_TRUE(holds(reply, "could not be encrypted, so what is stored stays: encryption fails on demand")) << reply;
    EXPECT_EQ(stored(), "kept");
    EXPECT_EQ(das.storedCell("Plain", "B", "", ""), std::nullopt);
  }
  EXPECT_EQ(update("Plain", "<A></A>"), written) << "an empty text is a value";
  EXPECT_EQ(stored(), "");
}

TEST_F(Faults, AreNotMetByThoseWhoLookBehindTheService)
{
  host::useKeyFile(folder / "key");
  set(FaultPlace::encryption, FaultKind::fails, 1);
  std::string text;
  {
    const host::WithoutFaults without;
    EXPECT_TRUE(DasCrypt::toEncryptedText("secret", text));
  }
  EXPECT_FALSE(DasCrypt::toEncryptedText("secret", text));
  host::forgetKey();
}

TEST_F(Faults, LetTheStoreRefuseEverythingAndChangeNothing)
{
  host::LocalMgmtStore real(folder / "ocms.db");
  host::FaultyLocalMgmt store(real);
  real.change("item", "old");
  ManageableData data;
  data.populate("item", "item", "new");
  std::list<std::string> rootIds = {"item"};
  set(FaultPlace::store, FaultKind::refuses);
  EXPECT_FALSE(store.registerService("Service", nullptr, 1));
  EXPECT_FALSE(store.lookupData(data));
  EXPECT_FALSE(store.subscribe(rootIds, nullptr));
  EXPECT_FALSE(store.publishData(data));
  EXPECT_FALSE(store.checkData(data, nullptr));
  EXPECT_EQ(data.getRootId(), "item");
  EXPECT_EQ(real.value("item"), "old");
  host::endFaults();
  EXPECT_TRUE(store.publishData(data));
  EXPECT_EQ(real.value("item"), "new");
}

TEST_F(Faults, LetAFullDiskTakeNothingAndGiveEverything)
{
  host::FaultyDisk disk;
  host::DataAccessService service(folder / "full.db", host::Storage::file, "", &disk);
  host::LocalMgmtStore store(folder / "ocms.db", host::Storage::file, "", &disk);
  service.provision({{"Plain", "", {"A"}, {}}});
  const auto updated = [&service](const std::string& value)
  { return hosttest::send(service, hosttest::updateRequest("Plain", "<A>" + value + "</A>")); };
  updated("old");
  store.change("item", "old");
  set(FaultPlace::disk, FaultKind::full);
  EXPECT_TRUE(holds(updated("new"), "full.db: the disk is full, on demand"));
  EXPECT_TRUE(holds(errorOf([&] { store.change("item", "new"); }), "ocms.db: the disk is full"));
  EXPECT_TRUE(holds(hosttest::send(service, hosttest::readRequest("Plain")), "<A>old</A>"));
  EXPECT_EQ(store.value("item"), "old");
  host::endFaults();
  EXPECT_EQ(updated("new"), written);
}

TEST_F(Faults, LetASecurityLogTakeNoRecordsWhileTheDiskIsFull)
{
  host::SecurityLogService real(folder / "security.log");
  host::FaultySecurityLogService log(real, "security.log");
  const auto logRecord = [&log] { log.logSecurityEvent(0, 4, 1, 5, 3, false, "r", "", ""); };
  set(FaultPlace::disk, FaultKind::full);
  EXPECT_EQ(errorOf(logRecord), "security.log: the disk is full, on demand");
  EXPECT_TRUE(real.lastLines(1).empty());
  host::endFaults();
  logRecord();
  EXPECT_EQ(real.lastLines(9).size(), 1U);
}

TEST_F(Faults, AreOnlyThoseThatAPlaceHas)
{
  EXPECT_THROW(set(FaultPlace::store, FaultKind::slow), host::Error);
  EXPECT_THROW(set(FaultPlace::encryption, FaultKind::absent), host::Error);
  EXPECT_THROW(set(FaultPlace::disk, FaultKind::full, 3), host::Error);
  EXPECT_TRUE(host::faults().empty());
}

TEST_F(Faults, AreCountedOnceEachByManyThreads)
{
  set(FaultPlace::das, FaultKind::empty, 100);
  std::vector<std::thread> threads;
  std::atomic<int> empty{0};
  for (int i = 0; i < 4; ++i)
    threads.emplace_back(
        [&]
        {
          for (int call = 0; call < 50; ++call)
            empty += read("Plain").empty() ? 1 : 0;
        });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(empty, 100);
}
