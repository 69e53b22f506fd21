#include "Trace.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <mutex>

#include <logAppUni.h>

namespace recording
{

std::vector<std::string>& trace()
{
  static std::vector<std::string> entries;
  return entries;
}

std::vector<std::string> traceOf(const std::string& prefix)
{
  std::vector<std::string> found;
  for (const std::string& entry : trace())
  {
    if (entry.compare(0, prefix.size(), prefix) == 0)
      found.push_back(entry);
  }
  return found;
}

void note(std::string entry)
{
  // The log is written by any thread.
  static std::mutex mutex;
  const std::lock_guard<std::mutex> lock(mutex);
  trace().push_back(std::move(entry));
}

std::string quoted(const std::string& text)
{
  return '"' + text + '"';
}

Behaviour& behaviour()
{
  static Behaviour current;
  return current;
}

void called(const std::string& name)
{
  // A copy, since what runs may take itself away.
  const auto everyCall = behaviour().everyCall;
  if (everyCall)
    everyCall(name);
}

std::string answered(const std::string& name, std::string text)
{
  if (behaviour().everyText)
    behaviour().everyText(name, text);
  return text;
}

void reset()
{
  trace().clear();
  behaviour() = Behaviour();
}

} // namespace recording

void logAppUni(const char* module, const char* sourceFile, int level, int line, const char* format, ...)
{
  va_list arguments;
  va_start(arguments, format);
  char* formatted = nullptr;
  const int length = vasprintf(&formatted, format, arguments);
  va_end(arguments);
  const std::string text = length < 0 ? "" : formatted;
  std::free(formatted);

  const bool ours =
      std::string(module) == "ServiceDataManager" && std::string(sourceFile) == "./src/ServiceDataManager" && line > 0;
  recording::note((ours ? "log " : "foreign log ") + std::to_string(level) + " " + text);
  if (recording::behaviour().logHook)
    recording::behaviour().logHook(level, text);
  recording::called("logAppUni");
}

bool loggingOnAppUni(const char* module, int level)
{
  recording::called("loggingOnAppUni");
  return std::string(module) == "ServiceDataManager" && level <= recording::behaviour().openLevel;
}
