// Waits for something that could hang if it were broken.
#pragma once

#include <chrono>
#include <future>
#include <memory>
#include <thread>
#include <utility>

namespace contract
{
/// Runs `action` on a thread of its own; false when it has not come back after a generous while. Such a thread is left
/// behind, so `action` must own what it uses.
template <typename Action>
bool finishes(Action action)
{
  auto done = std::make_shared<std::promise<void>>();
  std::future<void> finished = done->get_future();
  std::thread(
      [done, action = std::move(action)]() mutable
      {
        action();
        done->set_value();
      })
      .detach();
  return finished.wait_for(std::chrono::seconds(20)) == std::future_status::ready;
}
} // namespace contract
