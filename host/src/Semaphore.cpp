#include <Semaphore.h>

#include <stdexcept>

#include "SemaphoreContent.h"

Semaphore::Semaphore(int initial, int maximum, bool reentrant)
{
  if (initial < 0 || maximum < 1 || initial > maximum)
    throw std::invalid_argument("a semaphore begins with 0 to all of its units, and has at least one");
  content = std::make_unique<Content>(initial, reentrant);
}

Semaphore::~Semaphore() = default;

void Semaphore::Content::take()
{
  std::unique_lock<std::mutex> lock(mutex);
  int* own = nullptr;
  if (reentrant)
  {
    // The entry comes first: once the unit is taken nothing may fail any more.
    own = &holds[std::this_thread::get_id()];
    if (*own > 0)
    {
      ++*own;
      return;
    }
  }
  unitFree.wait(lock, [this] { return available > 0; });
  --available;
  if (own != nullptr)
    *own = 1;
}

void Semaphore::Content::giveBack() noexcept
{
  const std::lock_guard<std::mutex> lock(mutex);
  if (reentrant)
  {
    const auto own = holds.find(std::this_thread::get_id());
    if (--own->second > 0)
      return;
    holds.erase(own);
  }
  ++available;
  unitFree.notify_one();
}
