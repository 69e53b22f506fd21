// Sizes and places of what a service compiled earlier reads, writes and makes room for, on whatever word size.
#include <cstddef>
#include <memory>

#include <gtest/gtest.h>

#include <CriticalSection.h>
#include <LocalMgmtIfc.h>
#include <ManageableData.h>
#include <Semaphore.h>

#include "ServiceDataManager/ServiceDataManager.h"
#include "Services.h"

namespace
{

constexpr std::size_t word = sizeof(void*);
constexpr std::size_t text = sizeof(std::string);

template <typename Class, typename Field>
std::size_t placeOf(const Class& object, const Field& field)
{
  return static_cast<std::size_t>(reinterpret_cast<const char*>(&field) - reinterpret_cast<const char*>(&object));
}

TEST(Layout, OfTextsIsTheOneOfThePlatform)
{
  EXPECT_EQ(text, 2 * word + 16);
}

TEST(Layout, OfAnItemIsItsTableThenItsFieldsInOrder)
{
  const ManagedDataItem item;
  EXPECT_EQ(placeOf(item, item.rootId), word);
  EXPECT_EQ(placeOf(item, item.dasSchema), word + text);
  EXPECT_EQ(placeOf(item, item.dasItem), word + 2 * text);
  EXPECT_EQ(placeOf(item, item.dasIndexName), word + 3 * text);
  EXPECT_EQ(placeOf(item, item.dasIndexValue), word + 4 * text);
  EXPECT_EQ(placeOf(item, item.setter), word + 5 * text);
  EXPECT_EQ(placeOf(item, item.getter), 2 * word + 5 * text);
  EXPECT_EQ(placeOf(item, item.defaultValue), 3 * word + 5 * text);
  EXPECT_EQ(placeOf(item, item.isGroupItem), 3 * word + 6 * text);
  EXPECT_EQ(placeOf(item, item.dasEncrypted), 3 * word + 7 * text);
  EXPECT_EQ(sizeof item, 3 * word + 8 * text);
}

TEST(Layout, OfACallbackWithItsNameIsTwoPointers)
{
  using Getter = ServiceDataManagerIfc::Getter;
  using Setter = ServiceDataManagerIfc::Setter;
  EXPECT_EQ(offsetof(Getter, name), 0U);
  EXPECT_EQ(offsetof(Getter, getter), word);
  EXPECT_EQ(sizeof(Getter), 2 * word);
  EXPECT_EQ(offsetof(Setter, name), 0U);
  EXPECT_EQ(offsetof(Setter, setter), word);
  EXPECT_EQ(sizeof(Setter), 2 * word);
}

TEST(Layout, OfInterfacesIsTheirTableAlone)
{
  EXPECT_EQ(sizeof(ServiceDataManagerIfc), word);
  EXPECT_EQ(sizeof(ManagedItemSetter), word);
  EXPECT_EQ(sizeof(ManagedItemGetter), word);
  EXPECT_EQ(sizeof(std::unique_ptr<ServiceDataManagerIfc>), word);
}

TEST(Layout, OfTheLocalManagementStoreIsAServiceThenADictionary)
{
  EXPECT_EQ(sizeof(LocalMgmtIfc), 2 * word);
  const recording::Store store;
  EXPECT_EQ(placeOf(store, static_cast<const Executable&>(store)), 0U);
  EXPECT_EQ(placeOf(store, static_cast<const DxlDictionary&>(store)), word);
}

TEST(Layout, OfTheContractsOwnObjectsIsOnePointer)
{
  EXPECT_EQ(sizeof(ManageableData), word);
  EXPECT_EQ(sizeof(Semaphore), word);
  EXPECT_EQ(sizeof(CriticalSection), word);
}

TEST(Layout, OfASetRecordIsItsTableThenItsFieldsInOrder)
{
  const ServiceDataManager::SetDataBlob blob("", "", nullptr);
  EXPECT_EQ(placeOf(blob, blob.rootId), word);
  EXPECT_EQ(placeOf(blob, blob.value), word + text);
  EXPECT_EQ(placeOf(blob, blob.validated), word + 2 * text);
  EXPECT_EQ(placeOf(blob, blob.reason), 2 * word + 2 * text);
  EXPECT_EQ(placeOf(blob, blob.item), 2 * word + 3 * text);
  EXPECT_EQ(sizeof blob, 3 * word + 3 * text);
}

TEST(Layout, OfAGroupRecordIsItsTableThenItsFieldsInOrder)
{
  const ServiceDataManager::GroupDataBlob blob("", false, "");
  EXPECT_EQ(placeOf(blob, blob.groupName), word);
  EXPECT_EQ(placeOf(blob, blob.valid), word + text);
  EXPECT_EQ(placeOf(blob, blob.reason), 2 * word + text);
  EXPECT_EQ(sizeof blob, 2 * word + 2 * text);
}

} // namespace
