// Ctrl-C. A thread waits for the signal, so the program answers even while a command hangs.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "base/Descriptor.h"

namespace cli
{

/// Takes SIGINT over for as long as it lives; a SIGINT that was ignored before stays so. To be made before any other
/// thread, which would take the signal instead. The first interrupt of some work says what still runs, since nobody can
/// stop a callback in its middle; the second one ends the program with exit code 130. What was answered as done is on
/// the disk by then, and what was not is done wholly or not at all.
class Interrupts
{
public:
  Interrupts();
  ~Interrupts();
  Interrupts(const Interrupts&) = delete;
  Interrupts& operator=(const Interrupts&) = delete;

  /// Says what the program is at from now on, in words that may be shown, and forgets earlier interrupts of work.
  void doing(const std::string& work);

  /// Whether the current work was interrupted.
  bool interrupted() const;

  /// Says that the program waits for a command: an interrupt is about the line from now on.
  void awaitCommand();

  /// Waits until standard input has something, or has ended. False when an interrupt came first.
  bool waitForInput();

  /// Leaves interrupts to another program, which has the terminal, until `call` is over.
  void leaveTo(const std::function<void()>& call);

  /// Says beside the end by an interrupt what is left unfinished then, in words that may be shown.
  void leaves(const std::string& unfinished);

private:
  enum class State
  {
    working,
    waiting, ///< for input
    away     ///< another program has the terminal
  };

  void listen();
  void hear();
  void set(State itsState);
  bool takePending();

  mutable std::mutex mutex;
  State state = State::working;
  std::string work = "the program";
  std::chrono::steady_clock::time_point began = std::chrono::steady_clock::now();
  unsigned heard = 0;
  std::string left;
  const bool takenOver;
  sigset_t before{};
  const Descriptor signals;
  const Descriptor pending;
  const Descriptor over;
  std::thread listener;
};

} // namespace cli
