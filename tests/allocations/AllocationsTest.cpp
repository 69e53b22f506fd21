// How often the library asks for memory, with all log gates closed. Where a count is exact, one more is a loss and one
// less is a gain: both are to be noticed.
#include <malloc.h>

#include <filesystem>
#include <iostream>

#include <ManageableData.h>
#include <gtest/gtest.h>

#include "CountingNew.h"
#include "DASRequests.h"
#include "Subject.h"
#include "createXmlElement.h"

namespace
{

using Access = ServiceDataManagerTestAccess;

template <typename Action>
std::size_t requestsOf(Action action)
{
  const std::size_t before = cost::heap.requests;
  action();
  return cost::heap.requests - before;
}

class AllocationsTest : public ::testing::Test
{
protected:
  AllocationsTest() : previous(std::filesystem::current_path())
  {
    std::string pattern = (std::filesystem::temp_directory_path() / "sdm-cost-XXXXXX").string();
    folder = ::mkdtemp(pattern.data());
    std::filesystem::current_path(folder);
  }

  ~AllocationsTest() override
  {
    std::filesystem::current_path(previous);
    std::filesystem::remove_all(folder);
  }

  static std::size_t importRequests(std::size_t items)
  {
    bench::Subject subject({items, items});
    subject.startManager();
    return requestsOf([&] { Access::import(*subject.manager); });
  }

  static std::size_t setRequests(std::size_t items)
  {
    bench::Subject subject({2000, 2000});
    subject.startManager();
    ManageableData record;
    for (const std::string& rootId : subject.workload.databaseIds(items))
      record.populate(rootId, rootId, bench::newValue);
    return requestsOf([&] { subject.manager->setData(record); });
  }

  static double heapBytesPerItem(std::size_t items)
  {
    bench::Subject subject({items, 50});
    subject.renewManager();
    const std::size_t before = cost::heap.bytes;
    Access::load(*subject.manager, "CommsItemMap");
    return static_cast<double>(cost::heap.bytes - before) / static_cast<double>(items);
  }

private:
  std::filesystem::path previous;
  std::filesystem::path folder;
};

TEST_F(AllocationsTest, AGetterReadAsksForWhatItsRecordAsksForAndNoMore)
{
  bench::Subject subject({1000, 50});
  subject.startManager();
  const std::string rootId = subject.workload.databaseIds(1).front();
  ManageableData asked;
  asked.addRootId(rootId, nullptr);
  ManageableData alone;
  alone.addRootId(rootId, nullptr);
  const std::size_t recordsOwn = requestsOf(
      [&]
      {
        std::vector<std::string> rootIds;
        alone.getRootIds(rootIds);
        alone.populate(rootId, rootId, bench::liveValue);
      });
  EXPECT_EQ(requestsOf([&] { subject.manager->getData(asked); }), recordsOwn);
}

TEST_F(AllocationsTest, AnImportAsksForNothingPerColumn)
{
  EXPECT_EQ(importRequests(1000), importRequests(100));
}

TEST_F(AllocationsTest, ALookupAsksForNothing)
{
  bench::Subject subject({1000, 50});
  subject.startManager();
  const std::string rootId = subject.workload.databaseIds(1).front();
  EXPECT_EQ(requestsOf([&] { subject.manager->getPublishedItem(rootId); }), 0U);
}

TEST_F(AllocationsTest, AChangeOfTheStoreAsksForTheListOfItsRootIds)
{
  bench::Subject subject({1000, 50});
  subject.startManager();
  const std::string rootId = subject.workload.storeIds(1).front();
  ManageableData record;
  record.populate(rootId, rootId, bench::newValue);
  // The list, the root id in it, and the remark that the setter finds.
  EXPECT_EQ(requestsOf([&] { subject.manager->manageableDataChanged(record); }), 3U);
}

TEST_F(AllocationsTest, LoadingAsksSixTimesPerItem)
{
  bench::Subject subject({1000, 50});
  subject.renewManager();
  const std::size_t requests = requestsOf([&] { Access::load(*subject.manager, "CommsItemMap"); });
  // The item, its two long texts, its entries in two indexes and a root id as a key; some items are in fewer.
  EXPECT_LE(requests, 6200U);
}

TEST_F(AllocationsTest, ASetOfOneItemIsBounded)
{
  EXPECT_LE(setRequests(1), 14U);
}

TEST_F(AllocationsTest, FurtherItemsOfASetCostTheSameEach)
{
  const std::size_t ten = setRequests(10) - setRequests(1);
  const std::size_t thousand = setRequests(1000) - setRequests(1);
  EXPECT_LE(thousand, 111U * ten + 20U);
}

TEST_F(AllocationsTest, ASetTakesItsItemsOverInOneList)
{
  bench::Subject subject({1000, 50});
  subject.startManager();
  ManageableData record;
  for (const std::string& rootId : subject.workload.databaseIds(100))
    record.populate(rootId, rootId, bench::newValue);
  // The record's list of root ids, each of these, and the list of what is to be set.
  EXPECT_EQ(requestsOf([&] { Access::takeOver(*subject.manager, record); }), 102U);
}

TEST_F(AllocationsTest, ARequestIsBegunWithRoomForWhatFollows)
{
  const std::string schema(100, 'S');
  EXPECT_EQ(requestsOf([&] { sdm::beginUpdateRequest(schema); }), 1U);
}

TEST_F(AllocationsTest, AnElementAsksOnceForJustItsLength)
{
  const std::string name(20, 'n');
  const std::string value(100, 'v');
  const std::size_t before = cost::heap.bytes;
  std::string element;
  const std::size_t requests = requestsOf([&] { element = createXmlElement(name, value); });
  const std::size_t held = cost::heap.bytes - before;
  EXPECT_EQ(requests, 1U);
  EXPECT_EQ(held, element.size() + 1);
}

TEST_F(AllocationsTest, AReplyLeavesNothingOfItsParserBehind)
{
  bench::Subject subject({1000, 50});
  subject.startManager();
  Access::import(*subject.manager);
  // The parser is a C library, so that only the heap itself knows of its memory. One parser takes several kilobytes.
  const std::size_t before = ::mallinfo2().uordblks;
  for (int import = 0; import < 10; ++import)
    Access::import(*subject.manager);
  EXPECT_LT(::mallinfo2().uordblks, before + 10000U);
}

TEST_F(AllocationsTest, HeapPerItemDoesNotGrowWithTheMap)
{
  const double small = heapBytesPerItem(1000);
  const double large = heapBytesPerItem(100000);
  RecordProperty("bytes-per-item-1000", std::to_string(small));
  RecordProperty("bytes-per-item-100000", std::to_string(large));
  std::cout << "heap bytes per item: " << small << " at 1,000, " << large << " at 100,000\n";
  EXPECT_LE(large, small * 1.02);
}

} // namespace
