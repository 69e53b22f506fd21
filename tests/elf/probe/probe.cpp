// Writes as many bytes as it is told into a buffer of eight.
#include <cstdlib>
#include <cstring>

namespace
{
__attribute__((noinline)) int fill(int count)
{
  char buffer[8];
  char* volatile place = buffer; // so that the compiler does not know where it leads
  for (int i = 0; i < count; ++i)
    place[i] = 'x';
  return place[0];
}
} // namespace

int main(int argc, char** argv)
{
  char text[16];
  std::strcpy(text, argc > 1 ? argv[1] : "0");
  return fill(std::atoi(text)) == 'x' ? 0 : 1;
}
