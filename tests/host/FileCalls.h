// What the process does to its files, call by call: noted in order, and hard to do.
//
// Stands in for the C library's functions in the whole test program.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace hosttest
{
/// Notes, while it lives, what is synced, renamed and linked: "sync FILE", "rename FROM TO", "link TO", in order and by
/// full names. One at a time.
class FileCalls
{
public:
  FileCalls();
  ~FileCalls();
  FileCalls(const FileCalls&) = delete;
  FileCalls& operator=(const FileCalls&) = delete;

  /// What was noted so far.
  std::vector<std::string> noted() const;
  /// Runs at the next call that is noted, once, before it is carried out.
  void atTheNext(std::function<void()> action);
};

/// While it lives, each call that writes is interrupted before it took anything, and takes one byte at the next try.
class StingyWrites
{
public:
  StingyWrites();
  ~StingyWrites();
  StingyWrites(const StingyWrites&) = delete;
  StingyWrites& operator=(const StingyWrites&) = delete;

  /// Runs once, behind the next byte that this thread writes.
  void behindTheNextByte(std::function<void()> action);
};

/// While it lives, `action` runs in place of each sleep.
class InPlaceOfSleep
{
public:
  explicit InPlaceOfSleep(std::function<void()> action);
  ~InPlaceOfSleep();
  InPlaceOfSleep(const InPlaceOfSleep&) = delete;
  InPlaceOfSleep& operator=(const InPlaceOfSleep&) = delete;
};
} // namespace hosttest
