// State that outlives everything: a static device still works while it goes away, in whatever order static objects do.
#pragma once

#include <type_traits>
#include <utility>

namespace host
{
/// An object that is never taken down, so that destructors of static objects and functions given to `atexit` may use
/// it. Its memory stays reachable until the process ends. To be a `static` or `thread_local` of the function that hands
/// it out.
template <typename Object>
class Everlasting
{
public:
  /// Makes the object of these arguments.
  template <typename... Arguments>
  explicit Everlasting(Arguments&&... arguments) : object(new Object{std::forward<Arguments>(arguments)...})
  {
  }

  /// The object, valid until the process ends.
  Object& operator*() const noexcept
  {
    static_assert(std::is_trivially_destructible_v<Everlasting>, "going away would take the object with it");
    return *object;
  }

private:
  Object* object;
};
} // namespace host
