// The framework's lock: its state lies open in the class.
#pragma once

#include <condition_variable>
#include <map>
#include <mutex>
#include <string>
#include <thread>

class Semaphore
{
public:
  Semaphore(int initial, int maximum, bool reentrant);
  virtual ~Semaphore();

  virtual void take();
  virtual void give();
  virtual std::string name() const;

private:
  std::string owner = "framework";
  int units;
  bool again;
  std::map<std::thread::id, int> holders;
  std::mutex guard;
  std::condition_variable freed;
};
