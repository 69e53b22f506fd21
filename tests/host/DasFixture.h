// A Data Access Service with one unindexed and one indexed schema.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "HostTesting.h"
#include "host/DataAccessService.h"

namespace hosttest
{
class DasFixture : public testing::Test
{
protected:
  void SetUp() override
  {
    das.provision({{"Plain", "", {"A", "B"}, {}}, {"Rows", "Idx", {"A", "B"}, {"1", "2"}}});
  }

  std::string read(const std::string& schema, const std::string& rest = "")
  {
    return send(das, readRequest(schema, rest));
  }
  std::string update(const std::string& schema, const std::string& rest)
  {
    return send(das, updateRequest(schema, rest));
  }

  TemporaryFolder folder;
  const std::filesystem::path file = folder / "das.db";
  host::DataAccessService das{file};
};
} // namespace hosttest
