// The one ordered account of what the library did to its platform: log lines and calls, as texts.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace recording
{

/// The trace since the last reset. Log lines read "log LEVEL text"; calls read like calls.
std::vector<std::string>& trace();

/// The entries that begin with `prefix`, in order.
std::vector<std::string> traceOf(const std::string& prefix);

/// Adds an entry.
void note(std::string entry);

/// "name" in quotes.
std::string quoted(const std::string& text);

/// How the free functions of the platform behave; all back to normal with `reset`.
struct Behaviour
{
  /// Trace lines up to this level are wanted.
  int openLevel = 0;
  /// Note when the lock is taken and given back.
  bool traceLock = false;
  /// Note what is asked of management records and written into them, by others than the store.
  bool traceRecords = false;
  /// Set by `UntracedRecords`.
  bool quietRecords = false;
  bool encryptionFails = false;
  /// What hidePassword was asked for so far, and the name it masks.
  int hidePasswordCalls = 0;
  std::string secret;
  int lockDepth = 0;
  /// Runs after a log line was noted, to throw.
  std::function<void(int level, const std::string& text)> logHook;
  /// Runs at every call that the platform or a callback gets, whatever it is, with its name: to throw, to call back,
  /// to wait.
  std::function<void(const std::string& name)> everyCall;
  /// What a text becomes on its way out of a call of this name, when set.
  std::function<void(const std::string& name, std::string& text)> everyText;
};

Behaviour& behaviour();

/// To be told at the beginning of every call.
void called(const std::string& name);

/// The text that a call answers.
std::string answered(const std::string& name, std::string text);

/// Empties the trace and forgets every behaviour.
void reset();

/// What `DasCrypt` makes of a text.
std::string encrypted(const std::string& plain);

} // namespace recording
