// The shared library as a service gets it, over a platform of another make, through its interface alone.
#include <gtest/gtest.h>

#include "Record.h"
#include "ServiceDataManagerIfc.h"
#include "Services.h"
#include "Trace.h"

namespace
{

TEST(OtherPlatform, CarriesAManagerThroughItsLife)
{
  recording::reset();
  recording::Das das;
  recording::Store store;
  recording::Context context;
  context.services = {{"DataAccessServiceIfc", &das}, {"LocalMgmtIfc", &store}};
  store.dictionaries["map"] = {{"/item[1]/rootId", "volume"},
                               {"/item[1]/dasSchema", "Audio"},
                               {"/item[1]/dasItem", "Volume"},
                               {"/item[1]/setter", "volume"},
                               {"/item[1]/default", "5"}};
  recording::Setter setter("volume");
  recording::behaviour().openLevel = 5;
  {
    const auto manager = makeServiceDataManager();
    manager->setup(&context, nullptr, "phone", nullptr);
    manager->addSetter({"volume", &setter});
    manager->initialise("map");
    ManageableData data;
    data.populate("volume", "volume", "7");
    EXPECT_TRUE(manager->setData(data));
    EXPECT_NE(manager->getPublishedItem("volume"), nullptr);
  }
  EXPECT_EQ(recording::traceOf("set volume"),
            (std::vector<std::string>{R"(set volume("5", ""))", R"(set volume("7", ""))"}));
  EXPECT_EQ(recording::trace().back(), "log 5 deleting sdm");
}

} // namespace
