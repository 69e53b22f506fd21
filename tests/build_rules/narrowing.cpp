// Code that has to be refused, one piece at a time.
#include <cstddef>
#include <cstdint>

#ifdef SizeBecomesInt
int narrowed(std::size_t size)
{
  return size;
}
#endif

#ifdef SignIsLost
std::size_t narrowed(int number)
{
  return number;
}
#endif

#ifdef FileSizeBecomesSize
std::size_t narrowed(std::uint64_t fileSize)
{
  return fileSize;
}
#endif

#ifdef BytesBecomeWord
const std::uint32_t* narrowed(const char* bytes)
{
  return reinterpret_cast<const std::uint32_t*>(bytes);
}
#endif
