// Runs one target over the files of a folder, and over a few mutations of each that are the same every time: what a
// fuzzer once found stays found in every build, without the fuzzer.
//
// usage: replay_TARGET FILE|FOLDER [MUTATIONS]
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

#include "Fuzz.h"

namespace
{

constexpr std::size_t longestInput = 4096;

std::minstd_rand& bytesRandom()
{
  static std::minstd_rand random;
  return random;
}

std::vector<std::uint8_t> contentOf(const std::filesystem::path& path)
{
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::filesystem::path> filesOf(const std::filesystem::path& path)
{
  if (!std::filesystem::is_directory(path))
    return {path};
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(path))
    files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  return files;
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
    std::fprintf(stderr, "usage: %s FILE|FOLDER [MUTATIONS]\n", argv[0]);
    return 2;
  }
  const auto mutations = static_cast<unsigned int>(argc > 2 ? std::atoi(argv[2]) : 0);
  const std::vector<std::filesystem::path> files = filesOf(argv[1]);
  for (const std::filesystem::path& file : files)
  {
    const std::vector<std::uint8_t> input = contentOf(std::filesystem::absolute(file));
    std::printf("%s\n", file.filename().c_str());
    std::fflush(stdout);
    replay(input);
    replayMutations(input, mutations);
  }
  std::printf("%zu inputs, each with %u mutations\n", files.size(), mutations);
  return files.empty() ? 1 : 0;
}
