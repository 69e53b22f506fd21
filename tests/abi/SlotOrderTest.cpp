// The order of virtual operations is what a service compiled earlier calls by: it may only grow at the end, and not
// even there without a new SONAME, since services implement these classes themselves.
#include <vector>

#include <gtest/gtest.h>

#include <DataAccessServiceIfc.h>
#include <DxlDictionary.h>
#include <Executable.h>
#include <LocalMgmtIfc.h>
#include <MgmtAgentIfc.h>
#include <PhysicalInterfaceServiceIfc.h>
#include <SecurityLogServiceIfc.h>
#include <SvcRTEContext.h>
#include <ValidatorIfc.h>

#include "ServiceDataManagerIfc.h"
#include "Slots.h"

namespace
{

using slots::slotOf;
using slots::slotsOf;

/// The two destructors come first, then these operations, then nothing.
template <typename Class, typename... Operations>
void expectOrder(Operations... operations)
{
  const std::vector<std::ptrdiff_t> places = {slotOf(operations)...};
  for (std::size_t i = 0; i < places.size(); ++i)
    EXPECT_EQ(places[i], static_cast<std::ptrdiff_t>(i) + 2) << "operation " << i;
  EXPECT_EQ(slotsOf<Class>(), static_cast<std::ptrdiff_t>(places.size()) + 2);
}

template <typename Class>
void expectDestructorsOnly()
{
  EXPECT_EQ(slotsOf<Class>(), 2);
}

TEST(SlotOrder, OfTheManager)
{
  using Ifc = ServiceDataManagerIfc;
  expectOrder<Ifc>(&Ifc::setup, &Ifc::initialise, &Ifc::initialiseWithoutSettingDefaultData, &Ifc::ready, &Ifc::setData,
                   &Ifc::getData, &Ifc::manageableDataChanged, &Ifc::addGetter, &Ifc::addSetter, &Ifc::getItem,
                   &Ifc::getPublishedItem, &Ifc::setStartup, &Ifc::clearAllManagedData, &Ifc::setDefaultUserData,
                   &Ifc::importItemFromDAS, &Ifc::deleteGetters, &Ifc::deleteSetters, &Ifc::reloadUserData);
}

TEST(SlotOrder, OfCallbacks)
{
  expectOrder<ManagedItemSetter>(&ManagedItemSetter::setValue);
  expectOrder<ManagedItemGetter>(&ManagedItemGetter::getValue);
}

TEST(SlotOrder, OfClassesThatAreOnlyDestroyed)
{
  expectDestructorsOnly<ManagedDataItem>();
  expectDestructorsOnly<Executable>();
  expectDestructorsOnly<DxlDictionary>();
}

TEST(SlotOrder, OfTheRuntimeContext)
{
  expectOrder<SvcRTEContext>(&SvcRTEContext::findService);
}

TEST(SlotOrder, OfTheDataAccessService)
{
  expectOrder<DataAccessServiceIfc>(&DataAccessServiceIfc::sendRequest);
}

TEST(SlotOrder, OfTheInterfaceService)
{
  expectOrder<PhysicalInterfaceServiceIfc>(&PhysicalInterfaceServiceIfc::getInterfaceCount);
}

TEST(SlotOrder, OfTheLocalManagementStore)
{
  using Ifc = LocalMgmtIfc;
  expectOrder<Ifc>(&Ifc::registerService, &Ifc::lookupData, &Ifc::subscribe, &Ifc::publishData, &Ifc::checkData);
}

TEST(SlotOrder, OfTheSecurityLog)
{
  expectOrder<SecurityLogServiceIfc>(&SecurityLogServiceIfc::logSecurityEvent);
}

TEST(SlotOrder, OfTheManagementAgent)
{
  expectOrder<MgmtAgentIfc>(&MgmtAgentIfc::observedDataChanged);
}

TEST(SlotOrder, OfTheValidator)
{
  using Ifc = ValidatorIfc;
  expectOrder<Ifc>(&Ifc::getValidGroupItems, &Ifc::clearGroup, &Ifc::validateGroup, &Ifc::reloadGroup);
}

} // namespace
