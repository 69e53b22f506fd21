#include "MapCopy.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <unistd.h>

#include "Descriptor.h"
#include "StartError.h"
#include "host/PrivateFiles.h"

namespace cli
{
namespace
{

std::optional<std::string> contentOf(const std::filesystem::path& path)
{
  std::ifstream file(path, std::ios::binary);
  if (!file)
    return std::nullopt;
  std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  return file.bad() ? std::nullopt : std::optional<std::string>(std::move(content));
}

[[noreturn]] void notWritten(const std::filesystem::path& path)
{
  throw StartError("the device's item map " + path.string() + " cannot be written: " + std::strerror(errno) +
                   "; make room and the folder writable, or choose another one with --device");
}

bool writeAndSync(const std::filesystem::path& path, const std::string& content)
{
  const Descriptor file(host::openPrivate(path, O_WRONLY | O_TRUNC));
  if (file.number < 0)
    return false;
  return writeAll(file.number, content) && ::fsync(file.number) == 0;
}

} // namespace

void copyMap(const std::filesystem::path& source, const std::filesystem::path& target)
{
  const std::optional<std::string> content = contentOf(source);
  if (!content)
    throw StartError("the item map " + source.string() + " cannot be read; name another one with --map");
  if (contentOf(target) == content)
    return;
  std::filesystem::path half = target;
  half += ".new";
  if (!writeAndSync(half, *content) || ::rename(half.c_str(), target.c_str()) != 0)
    notWritten(target);
  const Descriptor folder(::open(target.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder.number < 0 || ::fsync(folder.number) != 0)
    notWritten(target);
}

} // namespace cli
