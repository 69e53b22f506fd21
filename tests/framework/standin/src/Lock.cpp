// The lock's operations.
#include <Semaphore.h>

Semaphore::Semaphore(int initial, int, bool reentrant) : units(initial), again(reentrant)
{
}

Semaphore::~Semaphore() = default;

void Semaphore::take()
{
  std::unique_lock<std::mutex> lock(guard);
  const auto self = std::this_thread::get_id();
  if (again && holders[self]++ > 0)
    return;
  freed.wait(lock, [this] { return units > 0; });
  --units;
}

void Semaphore::give()
{
  const std::lock_guard<std::mutex> lock(guard);
  const auto self = std::this_thread::get_id();
  if (again && --holders[self] > 0)
    return;
  if (again)
    holders.erase(self);
  ++units;
  freed.notify_one();
}

std::string Semaphore::name() const
{
  return owner;
}
