// Shows a line after a while and removes it again; shows nothing without a terminal.
#include "Progress.h"

#include <cstdlib>
#include <unistd.h>
#include <utility>

namespace cli
{
namespace
{

bool hasCursor()
{
  const char* terminal = std::getenv("TERM");
  return ::isatty(STDERR_FILENO) != 0 && terminal != nullptr && *terminal != '\0' && std::string(terminal) != "dumb";
}

/// At once, and past the streams that the thread which is waited for may be writing to.
void write(const std::string& text)
{
  static_cast<void>(::write(STDERR_FILENO, text.data(), text.size()) == 0);
}

} // namespace

Progress::Progress(std::string itsWhat) : what(std::move(itsWhat)), visible(hasCursor())
{
}

Progress::~Progress()
{
  clear();
}

void Progress::tell(const std::string& itsWhat)
{
  what = itsWhat;
  tick();
}

void Progress::tick()
{
  const auto passed = std::chrono::steady_clock::now() - began;
  if (!visible || passed < std::chrono::seconds(1))
    return;
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(passed).count();
  const std::string text = what + " … " + std::to_string(seconds) + " s";
  if (text == shownText)
    return;
  shownText = text;
  write("\r" + text + "\x1b[K\r");
}

void Progress::clear()
{
  if (!shownText.empty())
    write("\r\x1b[K");
  shownText.clear();
}

Waiting::Waiting(const std::string& what) : progress(what)
{
  if (hasCursor())
    watcher = std::thread([this] { watch(); });
}

Waiting::~Waiting()
{
  {
    const std::lock_guard<std::mutex> lock(guard);
    over = true;
  }
  ended.notify_one();
  if (watcher.joinable())
    watcher.join();
}

void Waiting::watch()
{
  std::unique_lock<std::mutex> lock(guard);
  while (!ended.wait_for(lock, Progress::interval, [this] { return over; }))
    progress.tick();
}

} // namespace cli
