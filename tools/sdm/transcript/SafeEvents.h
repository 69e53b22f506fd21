// What happens on a device as events of a transcript, without a secret in them.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "Secrets.h"
#include "host/DeviceLog.h"
#include "map/ItemTable.h"
#include "map/Masking.h"
#include "service/CallListener.h"

namespace cli::transcript
{

/// A command as a transcript has it: the line with names in place of its secrets, those words included whose numbers
/// are given. Only the prompt knows what the words of a command mean.
using CommandMask = std::function<std::string(const std::string& line, const ItemTable& items, const Masking& masking,
                                              Secrets& secrets, const std::set<std::size_t>& secretWords)>;

/// Root ids and values.
using NamedValues = std::vector<std::pair<std::string, std::string>>;

/// Makes one event of each thing that it is told, and learns secrets from it. Of one thread at a time.
class SafeEvents
{
public:
  using Json = nlohmann::ordered_json;

  /// Borrows table and masking. `itsFolder` is the device's, whose place no event tells.
  SafeEvents(const ItemTable& itemTable, const Masking& itsMasking, std::string itsFolder);

  Json command(const std::string& line, const CommandMask& mask, const std::set<std::size_t>& secretWords);
  Json request(const std::string& text);
  Json reply(const host::Exchange& exchange);
  Json store(const StoreCall& call);
  Json securityRecord(const RecordCall& call);
  Json log(const host::LogLine& line);
  Json operation(const OperationCall& call);
  Json result(const OperationCall& call, const OperationAnswer& answer);
  Json setter(const SetterCall& call);
  Json getter(const GetterCall& call);
  Json validator(const ValidatorCall& call);

  const Secrets& secrets() const
  {
    return named;
  }

private:
  std::string safe(const std::string& text);
  void addThrown(Json& event, const std::optional<std::string>& thrown);
  void addRow(Json& event, const std::string& row);
  void addReason(Json& event, const std::string& reason);
  Json valuesOf(const NamedValues& values);
  Json askedValuesOf(const NamedValues& values);

  const ItemTable& items;
  const Masking& masking;
  Secrets named;
  const std::string folder;
};

} // namespace cli::transcript
