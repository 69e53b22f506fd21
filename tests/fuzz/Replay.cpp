// Runs one target over its committed inputs, and over a few mutations of each that are the same every time: what a
// fuzzer once found stays found in every build, without the fuzzer.
//
// usage: replay_TARGET TARGET.inputs|INPUT [MUTATIONS]
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <vector>

#include "Fuzz.h"
#include "Inputs.h"

namespace
{

constexpr std::size_t longestInput = 4096;

std::minstd_rand& bytesRandom()
{
  static std::minstd_rand random;
  return random;
}

/// Those of a file of committed inputs, or the one that a file of any other name is.
std::vector<fuzz::Input> inputsOf(const std::filesystem::path& path)
{
  std::ifstream file(path, std::ios::binary);
  if (!file)
    throw std::runtime_error("it cannot be read");
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (path.extension() == ".inputs")
    return fuzz::readInputs(text);
  return {{path.filename().string(), text}};
}

void replay(const std::vector<std::uint8_t>& input)
{
  // A block of exactly this size, so that a sanitizer sees the first byte too many.
  const std::vector<std::uint8_t> exact(input.begin(), input.end());
  LLVMFuzzerTestOneInput(exact.data(), exact.size());
}

void replayMutations(std::vector<std::uint8_t> input, unsigned int mutations)
{
  bytesRandom().seed(1);
  for (unsigned int seed = 1; seed <= mutations; ++seed)
  {
    std::size_t size = std::min(input.size(), longestInput);
    input.resize(longestInput);
    size = LLVMFuzzerCustomMutator(input.data(), size, longestInput, seed);
    input.resize(size);
    replay(input);
  }
}

void replayAll(const fuzz::Input& input, unsigned int mutations)
{
  std::printf("%s\n", input.name.c_str());
  std::fflush(stdout);
  const std::vector<std::uint8_t> bytes(input.content.begin(), input.content.end());
  replay(bytes);
  replayMutations(bytes, mutations);
}

} // namespace

/// Replaces, inserts or removes one byte.
std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize)
{
  auto& random = bytesRandom();
  const std::size_t place = size == 0 ? 0 : random() % size;
  const auto byte = static_cast<std::uint8_t>(random());
  const unsigned int way = size == 0 ? 1 : static_cast<unsigned int>(random() % 3);
  if (way == 1 && size < maxSize)
  {
    std::copy_backward(data + place, data + size, data + size + 1);
    data[place] = byte;
    return size + 1;
  }
  if (way == 2)
  {
    std::copy(data + place + 1, data + size, data + place);
    return size - 1;
  }
  data[place] = byte;
  return size;
}

int main(int argc, char** argv)
{
  if (argc < 2)
  {
    std::fprintf(stderr, "usage: %s TARGET.inputs|INPUT [MUTATIONS]\n", argv[0]);
    return 2;
  }
  const auto mutations = static_cast<unsigned int>(argc > 2 ? std::atoi(argv[2]) : 0);
  try
  {
    const std::vector<fuzz::Input> inputs = inputsOf(argv[1]);
    for (const fuzz::Input& input : inputs)
      replayAll(input, mutations);
    std::printf("%zu inputs, each with %u mutations\n", inputs.size(), mutations);
    return inputs.empty() ? 1 : 0;
  }
  catch (const std::exception& problem)
  {
    std::fprintf(stderr, "%s: %s\n", argv[1], problem.what());
    return 1;
  }
}
