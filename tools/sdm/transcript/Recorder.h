// Writes a transcript of what happens on a device.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "Secrets.h"
#include "TranscriptFile.h"
#include "host/logAppUni.h"
#include "map/ItemTable.h"
#include "map/Masking.h"
#include "service/CallListener.h"

namespace cli::record
{

/// What the first line tells.
struct Header
{
  std::string version;
  std::string service;
  /// "sha256:" and the digest of the item map's bytes.
  std::string map;
  std::uint32_t interfaces = 1;
  int logLevel = 2;
};

/// A command as a transcript has it: the line with names in place of its secrets, those words included whose numbers
/// are given. Only the prompt knows what the words of a command mean.
using CommandMask = std::function<std::string(const std::string& line, const ItemTable& items, const Masking& masking,
                                              Secrets& secrets, const std::set<std::size_t>& secretWords)>;

/// The digest as a header has it. Throws `StartError` when the file cannot be read.
std::string digestOf(const std::filesystem::path& path);

/// May be used from any thread. Every text that it is given may hold secrets; none goes into the file.
class Recorder : public CallListener
{
public:
  using Json = nlohmann::ordered_json;
  using Values = std::vector<std::pair<std::string, std::string>>;

  /// Throws `StartError` when the file cannot be made, and when there is one already unless it may be overwritten. The
  /// file takes its place at `end`; without that nothing stays of it.
  Recorder(const std::filesystem::path& file, CommandMask mask, bool overwrites = false);
  ~Recorder() override;

  /// The first line. Borrows table and masking, which stay until `end`. `folder` is the device's, whose place no line
  /// tells.
  void begin(const Header& header, const ItemTable& items, const Masking& masking, const std::filesystem::path& folder);

  /// A command that is about to be carried out; `secretWords` are the numbers of words that are secrets, whatever they
  /// look like.
  void command(const std::string& line, const std::set<std::size_t>& secretWords = {});
  void commandEnded(bool done);

  void log(const host::LogLine& line);

  /// The last line, and the file takes its place. Nothing is written after it.
  void end();

  /// The secret that has this name so far.
  std::optional<std::string> secret(const std::string& name);

  /// Why something is missing in the file; empty when nothing is.
  std::string trouble();

  void registered(const std::vector<std::string>& setters, const std::vector<std::string>& getters) override;
  void operationBegins(const OperationCall& call) override;
  void operationEnded(const OperationCall& call, const OperationAnswer& answer) override;
  void setterEnded(const SetterCall& call) override;
  void getterEnded(const GetterCall& call) override;
  void validatorEnded(const ValidatorCall& call) override;
  void requestBegins(const std::string& request) override;
  void exchangeEnded(const host::Exchange& exchange) override;
  void storeEnded(const StoreCall& call) override;
  void recordEnded(const RecordCall& call) override;

private:
  struct Scene;

  void write(const Json& event);
  std::string safe(const std::string& text);
  void addThrown(Json& event, const std::optional<std::string>& thrown);
  Json valuesOf(const Values& values);
  Json askedValuesOf(const Values& values);

  std::recursive_mutex mutex;
  TranscriptFile file;
  const CommandMask commandMask;
  std::unique_ptr<Scene> scene;
  std::size_t commands = 0;
};

} // namespace cli::record
