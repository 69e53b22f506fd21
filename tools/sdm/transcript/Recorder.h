// Writes a transcript of what happens on a device.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "SafeEvents.h"
#include "TranscriptFile.h"
#include "host/DeviceLog.h"
#include "map/ItemTable.h"
#include "map/Masking.h"
#include "service/CallListener.h"

namespace cli::transcript
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

/// The digest as a header has it. Throws `StartError` when the file cannot be read.
std::string digestOf(const std::filesystem::path& path);

/// May be used from any thread. Every text that it is given may hold secrets; none goes into the file.
class Recorder : public CallListener
{
public:
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

  /// What is missing, and where the rest stands, when the program ends before `end`.
  std::string unfinished() const;

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
  void write(const SafeEvents::Json& event);
  /// Writes what `event` makes while there is a recording.
  template <typename Event>
  void tell(const Event& event);

  std::recursive_mutex mutex;
  TranscriptFile file;
  const CommandMask commandMask;
  /// Null before the beginning and after the end.
  std::unique_ptr<SafeEvents> events;
  std::size_t commands = 0;
};

} // namespace cli::transcript
