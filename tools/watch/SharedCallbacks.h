// Callbacks of a service that stand behind wrappers.
#pragma once

#include <map>
#include <memory>

namespace watch
{

/// A service may register one object under several names. Its wrappers, which the manager owns, share it, and it is
/// deleted with the last of them.
template <typename Callback>
class SharedCallbacks
{
public:
  /// Takes `callback` over when no wrapper has it yet.
  std::shared_ptr<Callback> of(Callback* callback)
  {
    std::weak_ptr<Callback>& known = owned[callback];
    std::shared_ptr<Callback> owner = known.lock();
    if (!owner)
      owner.reset(callback);
    known = owner;
    return owner;
  }

  /// When no wrapper is left.
  void forget()
  {
    owned.clear();
  }

private:
  std::map<Callback*, std::weak_ptr<Callback>> owned;
};

} // namespace watch
