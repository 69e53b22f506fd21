// Shows progress on a terminal when work takes longer than a second.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace cli
{

/// A line on standard error with the seconds that have passed, if standard error is a terminal. The destructor removes
/// it. The cursor stays at the start of the line, so that a log line overwrites it.
class Progress
{
public:
  /// What is done, in words; escaped by the caller where they come from outside.
  explicit Progress(std::string itsWhat);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// Says what is done from now on.
  void tell(const std::string& itsWhat);

  /// Shows it when it is time to. Called again and again by whoever waits.
  void tick();

  /// Makes room for output on the same terminal.
  void clear();

  /// How often `tick` is worth a call.
  static constexpr std::chrono::milliseconds interval{200};

private:
  std::string what;
  std::string shownText;
  const bool visible;
  const std::chrono::steady_clock::time_point began = std::chrono::steady_clock::now();
};

/// Progress of what does not come back in between. It takes a thread where there is a terminal, so no process is made
/// meanwhile.
class Waiting
{
public:
  explicit Waiting(const std::string& what);
  ~Waiting();
  Waiting(const Waiting&) = delete;
  Waiting& operator=(const Waiting&) = delete;

private:
  void watch();

  Progress progress;
  std::mutex guard;
  std::condition_variable ended;
  bool over = false;
  std::thread watcher;
};

} // namespace cli
