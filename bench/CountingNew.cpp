// The operators that every request of a C++ program for memory comes through. Each block knows its size, in front of
// it.
#include "CountingNew.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace cost
{

Heap heap;

std::size_t requestsOf(const bench::Run& run)
{
  std::size_t before = 0;
  for (int i = 0; i < 2; ++i)
  {
    if (run.prepare)
      run.prepare();
    before = heap.requests;
    run.run();
  }
  return heap.requests - before;
}

} // namespace cost

namespace
{

constexpr std::size_t header = alignof(std::max_align_t);

void giveBack(void* block)
{
  if (block == nullptr)
    return;
  void* whole = static_cast<char*>(block) - header;
  cost::heap.bytes -= *static_cast<std::size_t*>(whole);
  std::free(whole);
}

} // namespace

void* operator new(std::size_t size)
{
  void* whole = std::malloc(header + size);
  if (whole == nullptr)
    throw std::bad_alloc();
  *static_cast<std::size_t*>(whole) = size;
  ++cost::heap.requests;
  cost::heap.bytes += size;
  return static_cast<char*>(whole) + header;
}

void operator delete(void* block) noexcept
{
  giveBack(block);
}

void operator delete(void* block, std::size_t) noexcept
{
  giveBack(block);
}
