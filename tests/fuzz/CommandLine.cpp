// The operator's program: its arguments, and the command lines of a session on a device in memory. An input is a
// script; its first line is for the program's arguments.
#include <algorithm>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>

#include "Fuzz.h"
#include "Tokens.h"
#include "WorkingFolder.h"
#include "base/Arguments.h"
#include "base/Words.h"
#include "host/DeviceLog.h"
#include "host/KeyFile.h"
#include "prompt/Commands.h"
#include "prompt/Completion.h"
#include "prompt/Session.h"

namespace
{

const char* const itemMap = "sip.registrar,SipBaseSettings,Registrar,,,sip.example.com,setRegistrar,getRegistrar,,,,\n"
                            "sip.userName,SipBaseSettings,UserName,,,,setSipUserName,getSipUserName,,SipCredentials,,\n"
                            "sip.password,SipBaseSettings,Password,,,,setSipPassword,,,SipCredentials,,true\n"
                            "display.banner,UserPreferences,Banner,,,Ready,setBanner,getBanner,user,,,\n"
                            "display.brightness,UserPreferences,Brightness,,,80,setBrightness,getBrightness,user,,,\n"
                            "line.label-1,SipLines,Label,Line,1,,setLineLabel,getLineLabel,,,,\n"
                            "line.pin-1,SipLines,Pin,Line,1,,setLinePin,,,,,true\n"
                            "line.label-2,SipLines,Label,Line,2,,setLineLabel,getLineLabel,,,,\n"
                            "device.firmware,DeviceFacts,FirmwareRelease,,,4.2.0,,getFirmwareRelease,,,,\n"
                            "phone.label,,,,,,setPhoneLabel,getPhoneLabel,,,,\n"
                            "key.function-1,,,,1,none,setKeyFunction,getKeyFunction,,,,\n";

const fuzz::Grammar& grammar()
{
  static const fuzz::Grammar rules = {
      {"input", {"{arguments}\n{commands}"}},
      {"arguments", {"", "run", "run {option}", "run {option} {option}", "{option}", "{value} {option}"}},
      {"option",
       {"--help", "--version", "--device {value}", "--interfaces {number}", "--log-level {number}", "--map=x",
        "--devise", "--"}},
      {"commands", {"{command}", "{command}\n{commands}"}},
      {"command",
       {"{verb} {id}",
        "list",
        "show {id}",
        "get {id} {id}",
        "set {id} {value}",
        "set {id} {value} {id} {value}",
        "changed {id} {value}",
        "import {id}",
        "reset",
        "reload",
        "restart",
        "lock {id}",
        "unlock {id}",
        "lock",
        "traffic {number}",
        "securitylog",
        "log {number}",
        "help {verb}",
        "quit",
        "# {value}",
        "set {id}"}},
      {"verb", {"list", "show", "get", "set", "changed", "import", "traffic", "lst", "hepl", "help", "\"\""}},
      {"id",
       {"sip.registrar", "sip.userName", "sip.password", "display.banner", "display.brightness", "line.label-1",
        "line.pin-1", "line.label-2", "device.firmware", "phone.label", "key.function-1", "line.", "nobody"}},
      {"number", {"0", "1", "3", "6", "-1", "99999999999999999999", "0x1", ""}},
      {"value",
       {"12", "example.org", "\"with \\\"quotes\\\" and \\\\\"", "'single'", "a'b c'\"d e\"", "\"\"", "''", "\"open",
        "\xC3\xA4", "\xFF", "\xE2\x80\xAE", "\x1b[2J", "<a>&amp;</a>", "%s%n", "{value}{value}", "set", "off"}},
  };
  return rules;
}

/// Makes all that goes to the standard streams end here.
class Captured
{
public:
  Captured() : out(std::cout.rdbuf(text.rdbuf())), err(std::cerr.rdbuf(text.rdbuf()))
  {
  }
  ~Captured()
  {
    std::cout.rdbuf(out);
    std::cerr.rdbuf(err);
  }
  Captured(const Captured&) = delete;
  Captured& operator=(const Captured&) = delete;

  std::ostringstream text;

private:
  std::streambuf* out;
  std::streambuf* err;
};

/// Nothing that a terminal takes for more than text.
void requireSafeToPrint(const std::string& text, const std::string& line)
{
  for (const char c : text)
    fuzz::require((static_cast<unsigned char>(c) >= 0x20 && c != 0x7F) || c == '\n', "nothing printed moves the cursor",
                  line + "\n" + text);
  fuzz::require(text.find("\xE2\x80\xAE") == std::string::npos, "nothing printed reverses text", line + "\n" + text);
}

/// A word as it may be typed.
std::string typed(const std::string& word, char quote)
{
  std::string text(1, quote);
  for (const char c : word)
    text += (quote == '"' && (c == '"' || c == '\\') ? "\\" : "") + std::string(1, c);
  return text + quote;
}

void checkWords(const std::string& line)
{
  const cli::Words words = cli::splitWords(line);
  std::string again = " \t";
  for (const std::string& word : words.list)
    again += typed(word, word.find('\'') == std::string::npos && word.size() % 2 == 0 ? '\'' : '"') + " ";
  const cli::Words repeated = cli::splitWords(again);
  fuzz::requireEqual(repeated.problem + fuzz::lines(repeated.list), fuzz::lines(words.list),
                     "words in quotes are the same words");
}

void checkArguments(const std::string& line)
{
  const cli::Words words = cli::splitWords(line);
  std::vector<const char*> arguments = {"sdm"};
  for (const std::string& word : words.list)
    arguments.push_back(word.c_str());
  const Captured captured;
  const auto result = cli::readArguments(static_cast<int>(arguments.size()), arguments.data());
  const bool runs = std::holds_alternative<cli::Action>(result);
  const std::string told = captured.text.str();
  requireSafeToPrint(told, line);
  fuzz::require(runs == told.empty(), "who does not run says something", line);
}

/// A device that is as new at the beginning of each input.
class Device
{
public:
  Device()
  {
    std::ofstream("map.csv", std::ios::binary) << itemMap;
  }

  cli::RunningDevice& running()
  {
    if (device != nullptr)
      return *device;
    std::filesystem::remove_all(folder.path / "device");
    cli::RunSettings settings;
    settings.service = SDM_SAMPLE_SERVICE;
    settings.map = folder.path / "map.csv";
    settings.device = folder.path / "device";
    device = std::make_unique<cli::RunningDevice>(settings);
    // Its log is no concern here, and would stand between the fuzzer's own lines.
    host::openLog({"", 0, 0});
    return *device;
  }

  void changed()
  {
    device.reset();
  }

private:
  const fuzz::WorkingFolder folder;
  std::unique_ptr<cli::RunningDevice> device;
};

void checkStored(cli::RunningDevice& running, const cli::Words& words, const std::string& line)
{
  for (std::size_t i = 1; i + 1 < words.list.size(); i += 2)
  {
    const cli::MapItem* item = running.items().find(words.list[i]);
    fuzz::require(item != nullptr && !item->isLocal(), "only items of the database are set", line);
    const std::string cell = running.storedCell(*item).value_or("nothing");
    std::string plain = cell;
    if (item->encrypted && !cell.empty())
      fuzz::require(DasCrypt::fromEncryptedText(cell, plain) && cell != words.list[i + 1], "secrets are sealed", line);
    fuzz::requireEqual(plain, words.list[i + 1], "what was set is in the database: " + line);
  }
}

/// Whether the device may be another one than before.
bool mayChange(const std::string& command)
{
  static const std::vector<std::string> reading = {"list", "show", "get", "help", "quit", "import"};
  return std::find(reading.begin(), reading.end(), command) == reading.end();
}

void runScript(Device& device, const std::vector<std::string>& script)
{
  cli::RunningDevice& running = device.running();
  std::ostringstream out;
  cli::Session session(running, {out, out, cli::Style(false), cli::Style(false)});
  bool changed = false;
  for (std::size_t i = 1; i < script.size() && i < 12 && !session.quit; ++i)
  {
    const std::string& line = script[i];
    checkWords(line);
    for (const std::string& completion : cli::completions(line, running.items()))
      requireSafeToPrint(completion, line);
    const cli::Outcome outcome = cli::carryOut(session, line);
    const cli::Words words = cli::splitWords(line);
    const std::string printed = out.str();
    out.str("");
    requireSafeToPrint(printed, line);
    fuzz::require(outcome == cli::Outcome::done || !printed.empty(), "a refusal says why", line);
    if (words.list.empty())
      continue;
    changed = changed || mayChange(words.list.front());
    if (words.list.front() == "set" && outcome == cli::Outcome::done)
      checkStored(running, words, line);
  }
  if (changed)
    device.changed();
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  static Device device;
  const std::vector<std::string> script = fuzz::parts(fuzz::textOf(data, size), '\n');
  if (script.front().find('\0') == std::string::npos)
    checkArguments(script.front());
  runScript(device, script);
  return 0;
}

std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned int seed)
{
  return fuzz::mutate(grammar(), " \n\"'", data, size, maxSize, seed);
}
