// Where the compiler put a virtual operation, read the way a service that was compiled earlier relies on it.
#pragma once

#include <cstddef>
#include <cstring>

namespace slots
{

/// The place of a virtual operation in its class's first table, counted in entries; -1 when it is not virtual or
/// belongs to another table.
template <typename Class, typename Result, typename... Arguments>
std::ptrdiff_t slotOf(Result (Class::*operation)(Arguments...))
{
  // A pointer to a member is a number and an adjustment of `this`. The number counts bytes from the table's start, and
  // one bit tells that it does: of the adjustment on ARM, where code addresses need all of theirs, of the number
  // elsewhere.
  std::ptrdiff_t parts[2];
  static_assert(sizeof parts == sizeof operation);
  std::memcpy(parts, &operation, sizeof parts);
#if defined(__arm__) || defined(__aarch64__)
  const std::ptrdiff_t bytes = parts[0];
  const bool inFirstTable = parts[1] == 1;
#else
  const std::ptrdiff_t bytes = parts[0] - 1;
  const bool inFirstTable = (parts[0] & 1) == 1 && parts[1] == 0;
#endif
  return inFirstTable ? bytes / static_cast<std::ptrdiff_t>(sizeof(void*)) : -1;
}

/// What a derived class adds comes behind everything its base has.
template <typename Class>
class Extended : public Class
{
public:
  virtual void added() = 0;
};

/// The number of entries in a class's first table.
template <typename Class>
std::ptrdiff_t slotsOf()
{
  return slotOf(&Extended<Class>::added);
}

/// Calls the operation at a place of the object's table as one without arguments and without a result, as destructors
/// are.
inline void callSlot(void* object, std::size_t place)
{
  void (**table)(void*) = nullptr;
  std::memcpy(&table, object, sizeof table);
  table[place](object);
}

} // namespace slots
