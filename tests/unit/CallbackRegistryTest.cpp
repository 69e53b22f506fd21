// Callbacks by name: who is kept, who is found and who is deleted.
#include "ManagerTest.h"

namespace
{

using unit::ElementsAre;
using unit::IsEmpty;
using unit::ItemLine;
using unit::ManagerTest;

class CallbackRegistryTest : public ManagerTest
{
};

/// A setter whose end is a moment to call the manager.
class LastWord : public ManagedItemSetter
{
public:
  explicit LastWord(recording::Hook atItsEnd) : hook(std::move(atItsEnd))
  {
  }
  ~LastWord() override
  {
    hook();
  }
  LastWord(const LastWord&) = delete;
  LastWord& operator=(const LastWord&) = delete;
  bool setValue(const std::string&, const std::string&, std::string&) override
  {
    return true;
  }

private:
  recording::Hook hook;
};

TEST_F(CallbackRegistryTest, KeepsTheFirstGetterOfAName)
{
  recording::Getter& first = getter("name");
  recording::Getter second("name");
  EXPECT_THAT(traced([&] { manager.addGetter({"name", &second}); }), IsEmpty());
  EXPECT_EQ(access.findGetterFunc("name"), &first);
}

TEST_F(CallbackRegistryTest, KeepsTheFirstSetterOfAName)
{
  recording::Setter& first = setter("name");
  recording::Setter second("name");
  EXPECT_THAT(traced([&] { manager.addSetter({"name", &second}); }), IsEmpty());
  EXPECT_EQ(access.findSetterFunc("name"), &first);
}

TEST_F(CallbackRegistryTest, FindsCallbacksByTheExactName)
{
  recording::Setter& wantedSetter = setter("name");
  recording::Getter& wantedGetter = getter("name");
  EXPECT_EQ(access.findSetterFunc("name"), &wantedSetter);
  EXPECT_EQ(access.findGetterFunc("name"), &wantedGetter);
  for (const char* other : {"Name", "name ", "nam", ""})
  {
    EXPECT_EQ(access.findSetterFunc(other), nullptr) << other;
    EXPECT_EQ(access.findGetterFunc(other), nullptr) << other;
  }
}

TEST_F(CallbackRegistryTest, KeepsSettersAndGettersApart)
{
  setter("onlySetter");
  getter("onlyGetter");
  EXPECT_EQ(access.findGetterFunc("onlySetter"), nullptr);
  EXPECT_EQ(access.findSetterFunc("onlyGetter"), nullptr);
}

TEST_F(CallbackRegistryTest, CopiesTheNameOnRegistration)
{
  std::string name = "name";
  auto* added = new recording::Setter("copied");
  manager.addSetter({name.c_str(), added});
  name = "gone";
  EXPECT_EQ(access.findSetterFunc("name"), added);
}

TEST_F(CallbackRegistryTest, RegistersUnderTheLock)
{
  recording::behaviour().traceLock = true;
  EXPECT_THAT(traced([&] { getter("name"); }), ElementsAre("lock", "unlock"));
  EXPECT_THAT(traced([&] { setter("name"); }), ElementsAre("lock", "unlock"));
}

TEST_F(CallbackRegistryTest, FindsWithoutTakingTheLock)
{
  setter("name");
  getter("name");
  recording::behaviour().traceLock = true;
  EXPECT_THAT(traced([&] { access.findSetterFunc("name"); }), IsEmpty());
  EXPECT_THAT(traced([&] { access.findGetterFunc("name"); }), IsEmpty());
}

TEST_F(CallbackRegistryTest, DeletesEveryGetterUnderTheLockAndForgetsThem)
{
  getter("b");
  getter("a");
  setter("stays");
  recording::behaviour().traceLock = true;
  EXPECT_THAT(traced([&] { manager.deleteGetters(); }),
              ElementsAre("lock", "delete getter a", "delete getter b", "unlock"));
  EXPECT_EQ(access.findGetterFunc("a"), nullptr);
  EXPECT_NE(access.findSetterFunc("stays"), nullptr);
}

TEST_F(CallbackRegistryTest, DeletesEverySetterUnderTheLockAndForgetsThem)
{
  setter("b");
  setter("a");
  getter("stays");
  recording::behaviour().traceLock = true;
  EXPECT_THAT(traced([&] { manager.deleteSetters(); }),
              ElementsAre("lock", "delete setter a", "delete setter b", "unlock"));
  EXPECT_EQ(access.findSetterFunc("a"), nullptr);
  EXPECT_NE(access.findGetterFunc("stays"), nullptr);
}

TEST_F(CallbackRegistryTest, DeletesACallbackOnce)
{
  setter("a");
  getter("a");
  manager.deleteSetters();
  manager.deleteGetters();
  EXPECT_THAT(traced([&] { manager.deleteSetters(); }), IsEmpty());
  EXPECT_THAT(traced([&] { manager.deleteGetters(); }), IsEmpty());
}

TEST_F(CallbackRegistryTest, TakesANewCallbackUnderANameWhoseCallbackWasDeleted)
{
  setter("a");
  manager.deleteSetters();
  auto* next = new recording::Setter("next");
  manager.addSetter({"a", next});
  EXPECT_EQ(access.findSetterFunc("a"), next);
}

TEST_F(CallbackRegistryTest, LeavesThePointersOfItemsAlone)
{
  load({ItemLine("item").both("callback")});
  ManagedItemSetter* const before = item("item").setter;
  manager.deleteSetters();
  EXPECT_EQ(item("item").setter, before);
}

TEST_F(CallbackRegistryTest, KeepsANullCallbackAsANameWithoutOne)
{
  manager.addSetter({"empty", nullptr});
  manager.addGetter({"empty", nullptr});
  recording::Setter late("late");
  manager.addSetter({"empty", &late});
  EXPECT_EQ(access.findSetterFunc("empty"), nullptr);
  EXPECT_EQ(access.findGetterFunc("empty"), nullptr);
  EXPECT_THAT(traced([&] { manager.deleteSetters(); }), IsEmpty());
  EXPECT_THAT(traced([&] { manager.deleteGetters(); }), IsEmpty());
}

TEST_F(CallbackRegistryTest, DeletesACallbackOnceThatHasSeveralNames)
{
  auto* sharedSetter = new recording::Setter("shared");
  auto* sharedGetter = new recording::Getter("shared");
  for (const char* name : {"a", "b"})
  {
    manager.addSetter({name, sharedSetter});
    manager.addGetter({name, sharedGetter});
  }
  EXPECT_THAT(traced([&] { manager.deleteSetters(); }), ElementsAre("delete setter shared"));
  EXPECT_THAT(traced([&] { manager.deleteGetters(); }), ElementsAre("delete getter shared"));
}

TEST_F(CallbackRegistryTest, RefusesACallbackWithoutAName)
{
  recording::Setter namelessSetter("nameless");
  recording::Getter namelessGetter("nameless");
  EXPECT_THAT(traced(
                  [&] {
                    manager.addSetter({nullptr, &namelessSetter});
                  }),
              ElementsAre("log 2 addSetter setter without a name"));
  EXPECT_THAT(traced(
                  [&] {
                    manager.addGetter({nullptr, &namelessGetter});
                  }),
              ElementsAre("log 2 addGetter getter without a name"));
  EXPECT_EQ(access.findSetterFunc(""), nullptr);
  EXPECT_EQ(access.findGetterFunc(""), nullptr);
}

TEST_F(CallbackRegistryTest, ACallbackMayUseTheRegistryFromItsDestructor)
{
  recording::Setter* added = nullptr;
  manager.addSetter({"a", new LastWord(
                              [&]
                              {
                                added = new recording::Setter("added");
                                manager.addSetter({"a", added});
                              })});
  setter("b");
  manager.deleteSetters();
  EXPECT_EQ(access.findSetterFunc("a"), added);
  EXPECT_EQ(access.findSetterFunc("b"), nullptr);
}

} // namespace
