// The fixture of the unit tests: a manager on the recording platform, in a working directory of its own.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ItemLine.h"
#include "Record.h"
#include "ServiceDataManagerTestAccess.h"
#include "Services.h"
#include "Trace.h"

namespace unit
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ManagerTest : public ::testing::Test
{
protected:
  ManagerTest();
  ~ManagerTest() override;

  /// Registers a callback under this name, or returns the one registered before.
  recording::Setter& setter(const std::string& name);
  recording::Getter& getter(const std::string& name);

  /// Adds these items to the table, registering the callbacks they name, and builds the indexes.
  void load(const std::vector<ItemLine>& lines);

  /// The item of the table with this root id, the first one of several.
  ManagedDataItem& item(const std::string& rootId);

  /// Writes the item map file of the working directory.
  void writeItemMap(const std::string& text);

  /// A set request over these root ids and values.
  std::unique_ptr<ManageableData> request(const std::vector<std::pair<std::string, std::string>>& values);

  /// Runs `operation` and returns what it added to the trace.
  template <typename Operation>
  std::vector<std::string> traced(Operation operation)
  {
    recording::trace().clear();
    operation();
    return recording::trace();
  }

  /// Takes a service away, or another one in its place.
  void withdraw(const std::string& interfaceName)
  {
    context.services.erase(interfaceName);
  }

  recording::Context context;
  recording::Das das;
  recording::Interfaces interfaces;
  recording::Store store;
  recording::SecurityLog securityLog;
  recording::Validator validator;
  recording::Agent agent;

  std::unique_ptr<ServiceDataManager> owned;
  ServiceDataManager& manager;
  ServiceDataManagerTestAccess access;

private:
  std::string directory;
  std::string previousDirectory;
  std::map<std::string, recording::Setter*> setters;
  std::map<std::string, recording::Getter*> getters;
};

/// A reply of the database: kind, then the elements as they are.
std::string replyOf(const std::string& kind, const std::string& schema, const std::string& elements);
std::string readReply(const std::string& schema, const std::string& elements);
std::string updateReply();

} // namespace unit
