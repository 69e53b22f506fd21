// Values of more than 1 MiB, from the request through the database and back after a restart.
#include "Life.h"

namespace
{

using scenario::Life;
using scenario::PowerOn;

class LargeValues : public Life
{
protected:
  const std::string large = std::string(2 * 1024 * 1024, 'v') + "end";
};

TEST_F(LargeValues, LastInTheDatabase)
{
  {
    PowerOn run(folder);
    run.start();
    EXPECT_EQ(run.set({{"line.label-1", large}}), "done");
    EXPECT_TRUE(run.get("line.label-1") == large);
  }
  PowerOn run(folder);
  run.start();
  EXPECT_TRUE(run.get("line.label-1") == large);
  EXPECT_EQ(run.get("line.label-2"), "Line 2");
}

TEST_F(LargeValues, LastEncrypted)
{
  {
    PowerOn run(folder);
    run.start();
    EXPECT_EQ(run.set({{"sip.password", large}}), "done");
  }
  PowerOn run(folder);
  run.start();
  EXPECT_TRUE(run.phone.live["password"] == large);
}

TEST_F(LargeValues, AreReadFromTheDatabaseWhereNoGetterIs)
{
  PowerOn run(folder);
  run.start();
  const std::string update = R"(<Schema name="Audio"><ReasonForMessage>update_request</ReasonForMessage><Model>)" +
                             large + "</Model></Schema>";
  run.device.das().sendRequest(update.data(), update.size());
  EXPECT_TRUE(run.get("phone.model") == large);
}

} // namespace
