// Of the two destructors at the head of each table the first destroys the object, the second frees it as well.
#include <new>

#include <gtest/gtest.h>

#include "ServiceDataManager/ServiceDataManager.h"
#include "Services.h"
#include "Slots.h"

namespace
{

int destroyed = 0;
int freed = 0;

/// Counts how objects of a class end.
template <typename Class>
class Mortal : public Class
{
public:
  using Class::Class;
  ~Mortal() override
  {
    ++destroyed;
  }

  static void* operator new(std::size_t size)
  {
    return ::operator new(size);
  }
  static void* operator new(std::size_t, void* place)
  {
    return place;
  }
  static void operator delete(void* object)
  {
    ++freed;
    ::operator delete(object);
  }
};

template <typename Class>
Mortal<Class>* make(void* place)
{
  if constexpr (std::is_default_constructible_v<Class>)
    return new (place) Mortal<Class>();
  else
    return new (place) Mortal<Class>("callback");
}

/// Ends one object by each of the two destructors that stand in its table seen as a `Base`.
template <typename Class, typename Base>
void expectDestructorsFirst()
{
  void* place = Mortal<Class>::operator new(sizeof(Mortal<Class>));
  destroyed = 0;
  freed = 0;
  slots::callSlot(static_cast<Base*>(make<Class>(place)), 0);
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(freed, 0);
  slots::callSlot(static_cast<Base*>(make<Class>(place)), 1);
  EXPECT_EQ(destroyed, 2);
  EXPECT_EQ(freed, 1);
}

TEST(DestructorSlots, ComeFirstInTheManager)
{
  expectDestructorsFirst<ServiceDataManager, ServiceDataManagerIfc>();
}

TEST(DestructorSlots, ComeFirstInItemsCallbacksAndRecords)
{
  expectDestructorsFirst<ManagedDataItem, ManagedDataItem>();
  expectDestructorsFirst<recording::Setter, ManagedItemSetter>();
  expectDestructorsFirst<recording::Getter, ManagedItemGetter>();
}

TEST(DestructorSlots, ComeFirstInEachContractClass)
{
  expectDestructorsFirst<Executable, Executable>();
  expectDestructorsFirst<DxlDictionary, DxlDictionary>();
  expectDestructorsFirst<recording::Context, SvcRTEContext>();
  expectDestructorsFirst<recording::Das, DataAccessServiceIfc>();
  expectDestructorsFirst<recording::Interfaces, PhysicalInterfaceServiceIfc>();
  expectDestructorsFirst<recording::Store, LocalMgmtIfc>();
  expectDestructorsFirst<recording::SecurityLog, SecurityLogServiceIfc>();
  expectDestructorsFirst<recording::Agent, MgmtAgentIfc>();
  expectDestructorsFirst<recording::Validator, ValidatorIfc>();
}

TEST(DestructorSlots, ComeFirstInBothTablesOfTheLocalManagementStore)
{
  expectDestructorsFirst<recording::Store, Executable>();
  expectDestructorsFirst<recording::Store, DxlDictionary>();
}

} // namespace
