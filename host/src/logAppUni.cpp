// A line is formatted once, told to the listener, and handed to the logging library, which knows the sinks.
#include "host/DeviceLog.h"

#include <fcntl.h>
#include <spdlog/logger.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/ansicolor_sink.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <string_view>
#include <utility>
#include <vector>

#include "Everlasting.h"
#include "Files.h"
#include "PlainLine.h"
#include "host/Error.h"
#include "host/IsoTime.h"
#include "host/PrivateFiles.h"

namespace host
{
namespace
{
constexpr std::size_t fileSize = 5UL * 1024 * 1024;
constexpr std::size_t olderFiles = 2;
constexpr int everything = 6;

/// Ours count up with detail, the logging library's count down.
spdlog::level::level_enum libraryLevel(int level)
{
  static constexpr std::array<spdlog::level::level_enum, 7> levels = {
      spdlog::level::off,  spdlog::level::critical, spdlog::level::err,  spdlog::level::warn,
      spdlog::level::info, spdlog::level::debug,    spdlog::level::trace};
  return levels[static_cast<std::size_t>(std::clamp(level, 0, everything))];
}

/// A file that is its owner's alone from its first byte on; the logging library would make it open to others.
spdlog::sink_ptr fileSink(const std::filesystem::path& file)
{
  if (const std::error_code failure = makePrivateFolders(file.parent_path()))
    throw spdlog::spdlog_ex(failure.message());
  spdlog::file_event_handlers handlers;
  handlers.before_open = [](const spdlog::filename_t& name)
  {
    if (const int made = openPrivate(name, O_WRONLY | O_NONBLOCK); made >= 0)
      ::close(made);
  };
  return std::make_shared<spdlog::sinks::rotating_file_sink_mt>(file.string(), fileSize, olderFiles, false, handlers);
}

spdlog::sink_ptr consoleSink(int level)
{
  // Looks by itself whether standard error is a terminal that knows colours.
  auto sink = std::make_shared<spdlog::sinks::ansicolor_stderr_sink_mt>(spdlog::color_mode::automatic);
  for (const auto plain : {spdlog::level::info, spdlog::level::debug, spdlog::level::trace})
    sink->set_color(plain, sink->reset);
  sink->set_level(libraryLevel(level));
  return sink;
}

/// The logging library's own counts milliseconds before 1970 from the wrong side.
class TimeOfLine : public spdlog::custom_flag_formatter
{
public:
  void format(const spdlog::details::log_msg& line, const std::tm& /*parts*/, spdlog::memory_buf_t& text) override
  {
    const std::string time = localTime(line.time);
    text.append(time.data(), time.data() + time.size());
  }
  std::unique_ptr<spdlog::custom_flag_formatter> clone() const override
  {
    return std::make_unique<TimeOfLine>();
  }
};

std::shared_ptr<spdlog::logger> makeLogger(const LogSettings& settings)
{
  std::vector<spdlog::sink_ptr> sinks = {consoleSink(settings.consoleLevel)};
  if (!settings.file.empty())
  {
    sinks.push_back(fileSink(settings.file));
    sinks.back()->set_level(libraryLevel(settings.fileLevel));
  }
  auto logger = std::make_shared<spdlog::logger>("device", sinks.begin(), sinks.end());
  logger->set_level(spdlog::level::trace);
  logger->flush_on(spdlog::level::trace);
  auto formatter = std::make_unique<spdlog::pattern_formatter>();
  formatter->add_flag<TimeOfLine>('*').set_pattern("%^%*%z %v%$");
  logger->set_formatter(std::move(formatter));
  return logger;
}

struct Log
{
  std::mutex mutex;
  std::shared_ptr<spdlog::logger> logger = makeLogger({{}, everything, everything});

  std::atomic<int> level{2};
  std::atomic<bool> modulesDiffer{false};
  std::shared_mutex modulesMutex;
  std::map<std::string, int, std::less<>> modules;

  std::atomic<bool> heard{false};
  std::mutex listenerMutex;
  std::function<void(const LogLine&)> listener;
};

/// Nothing is lost by its not being taken down, since every line is flushed.
Log& theLog()
{
  static const Everlasting<Log> log;
  return *log;
}

std::shared_ptr<spdlog::logger> currentLogger()
{
  Log& log = theLog();
  const std::lock_guard<std::mutex> lock(log.mutex);
  return log.logger;
}

void replaceLogger(std::shared_ptr<spdlog::logger> logger)
{
  Log& log = theLog();
  const std::lock_guard<std::mutex> lock(log.mutex);
  log.logger = std::move(logger);
}

/// The text that printf would write.
__attribute__((format(printf, 1, 0))) std::string formatted(const char* format, va_list arguments)
{
  char* allocated = nullptr;
  const int length = vasprintf(&allocated, format, arguments);
  if (length < 0)
    return format;
  const std::unique_ptr<char, decltype(&std::free)> text(allocated, &std::free);
  return {text.get(), static_cast<std::size_t>(length)};
}

/// One line feed at the end belongs to the line, not to the text.
std::string_view withoutLineEnd(std::string_view text)
{
  if (!text.empty() && text.back() == '\n')
    text.remove_suffix(1);
  return text;
}

void tellListener(const char* module, int level, std::string_view text)
{
  Log& log = theLog();
  if (!log.heard)
    return;
  const std::lock_guard<std::mutex> lock(log.listenerMutex);
  if (log.listener)
    log.listener({module, level, std::string(text)});
}
} // namespace

void openLog(const LogSettings& settings)
{
  try
  {
    requireRegular(settings.file);
    replaceLogger(makeLogger(settings));
  }
  catch (const spdlog::spdlog_ex& error)
  {
    throw Error(settings.file.string() + ": the log cannot be opened: " + error.what());
  }
}

void closeLog()
{
  replaceLogger(makeLogger({{}, everything, everything}));
}

void setLogLevel(int level)
{
  theLog().level = level;
}

void setLogLevel(const std::string& module, int level)
{
  Log& log = theLog();
  const std::unique_lock<std::shared_mutex> lock(log.modulesMutex);
  log.modules[module] = level;
  log.modulesDiffer = true;
}

void clearLogLevel(const std::string& module)
{
  Log& log = theLog();
  const std::unique_lock<std::shared_mutex> lock(log.modulesMutex);
  log.modules.erase(module);
  log.modulesDiffer = !log.modules.empty();
}

int logLevel()
{
  return theLog().level;
}

void listenToLog(std::function<void(const LogLine&)> listener)
{
  Log& log = theLog();
  const std::lock_guard<std::mutex> lock(log.listenerMutex);
  log.heard = static_cast<bool>(listener);
  log.listener = std::move(listener);
}
} // namespace host

void logAppUni(const char* module, const char* sourceFile, int level, int line, const char* format, ...)
{
  va_list arguments;
  va_start(arguments, format);
  const std::string text = host::formatted(format, arguments);
  va_end(arguments);
  host::tellListener(module, level, host::withoutLineEnd(text));
  const std::string place = std::to_string(level) + " " + module + " " + sourceFile + ":" + std::to_string(line) + " ";
  host::currentLogger()->log(host::libraryLevel(level),
                             spdlog::string_view_t(place + host::oneLine(host::withoutLineEnd(text), false)));
}

bool loggingOnAppUni(const char* module, int level)
{
  host::Log& log = host::theLog();
  if (log.modulesDiffer)
  {
    const std::shared_lock<std::shared_mutex> lock(log.modulesMutex);
    const auto own = log.modules.find(std::string_view(module));
    if (own != log.modules.end())
      return level <= own->second;
  }
  return level <= log.level;
}
