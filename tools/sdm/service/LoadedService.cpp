// Opened with dlopen by its whole path, and asked for its version before anything else.
#include "LoadedService.h"

#include <array>
#include <cstring>
#include <dlfcn.h>
#include <elf.h>
#include <link.h>
#include <string>
#include <system_error>
#include <unistd.h>
#include <vector>

#include "ServiceCall.h"
#include "base/ProgramsBeside.h"
#include "base/StartError.h"
#include "base/Text.h"
#include "base/WholeFile.h"

namespace cli
{
namespace
{

constexpr const char* sampleName = "commsservice.so";
constexpr const char* entryName = "sdmService";

using EntryPoint = const loadable::ServiceEntry* (*)();

[[noreturn]] void notLoaded(const std::filesystem::path& path, const std::string& why)
{
  throw StartError("the service " + path.string() + " cannot be loaded: " + why);
}

Descriptor openedForReading(const std::filesystem::path& path)
{
  try
  {
    return openedRegular(path);
  }
  catch (const Unusable& error)
  {
    notLoaded(path, error.what());
  }
}

/// False when so much does not stand there.
bool readAt(const Descriptor& file, std::uint64_t place, void* to, std::size_t size)
{
  return ::pread(file.number, to, size, static_cast<off_t>(place)) == static_cast<ssize_t>(size);
}

/// The parts of an ELF header that tell the machine; they lie at the same places for 32 and 64 bits.
struct Machine
{
  std::array<unsigned char, EI_NIDENT> identification;
  std::uint16_t type;
  std::uint16_t machine;
};

Machine machineOf(const std::filesystem::path& path)
{
  const Descriptor file = openedForReading(path);
  Machine header{};
  if (!readAt(file, 0, &header, sizeof header) || std::memcmp(header.identification.data(), ELFMAG, SELFMAG) != 0)
    notLoaded(path, "it is not a shared object");
  return header;
}

std::string machineName(const Machine& of)
{
  switch (of.machine)
  {
  case EM_X86_64:
    return "x86-64";
  case EM_386:
    return "32-bit x86";
  case EM_ARM:
    return "32-bit ARM";
  case EM_AARCH64:
    return "64-bit ARM";
  default:
    return "machine " + std::to_string(of.machine);
  }
}

/// Whether everything that gets loaded is in the file. Reading what is not would end the process.
bool isWhole(const std::filesystem::path& path)
{
  const Descriptor file = openedForReading(path);
  ElfW(Ehdr) header{};
  if (!readAt(file, 0, &header, sizeof header))
    return false;
  const std::uintmax_t size = std::filesystem::file_size(path);
  for (unsigned i = 0; i < header.e_phnum; ++i)
  {
    ElfW(Phdr) part{};
    if (!readAt(file, header.e_phoff + i * sizeof part, &part, sizeof part) || part.p_offset > size ||
        part.p_filesz > size - part.p_offset)
      return false;
  }
  return true;
}

// The loader's own words for these are about the insides of files.
void checkFile(const std::filesystem::path& path)
{
  std::error_code unknown;
  if (std::filesystem::is_directory(path, unknown))
    notLoaded(path, "it is a folder");
  const Machine its = machineOf(path);
  const Machine own = machineOf("/proc/self/exe");
  const bool sameBytes = std::memcmp(its.identification.data(), own.identification.data(), EI_VERSION) == 0;
  if (!sameBytes || its.machine != own.machine)
    notLoaded(path, "it is built for " + machineName(its) + ", this program for " + machineName(own));
  if (its.type != ET_DYN)
    notLoaded(path, "it is not a shared object");
  if (!isWhole(path))
    notLoaded(path, "the end of the file is missing");
}

/// What the loader says, without the name of the file, which stands in our own line.
std::string loaderError(const std::filesystem::path& path)
{
  const char* said = dlerror();
  std::string text = said == nullptr ? "unknown reason" : said;
  const std::string prefix = path.string() + ": ";
  if (beginsWith(text, prefix))
    text.erase(0, prefix.size());
  return text;
}

/// What `question` answers, of the service's operation with this name.
template <typename Question>
auto ask(const std::filesystem::path& path, const char* operation, const Question& question)
{
  try
  {
    return calling("the service's " + std::string(operation), question);
  }
  catch (const std::exception& error)
  {
    notLoaded(path, std::string("its ") + operation + " failed: " + error.what());
  }
}

const loadable::ServiceEntry& entryOf(const std::filesystem::path& path)
{
  checkFile(path);
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr)
    notLoaded(path, loaderError(path));
  void* symbol = dlsym(library, entryName);
  if (symbol == nullptr)
    notLoaded(path, std::string("it has no entry point ") + entryName + ", see SDM_SERVICE in loadable/Service.h");
  const loadable::ServiceEntry* entry = reinterpret_cast<EntryPoint>(symbol)();
  if (entry == nullptr)
    notLoaded(path, std::string("its entry point ") + entryName + " answers null");
  if (entry->version != loadable::serviceVersion)
    notLoaded(path, "it is built for version " + std::to_string(entry->version) +
                        " of loadable/Service.h, this program for version " + std::to_string(loadable::serviceVersion) +
                        "; build it again");
  return *entry;
}

std::unique_ptr<loadable::Service> make(const std::filesystem::path& path)
{
  const loadable::ServiceEntry& entry = entryOf(path);
  std::string failure = "its factory answers null";
  try
  {
    const auto made = [&]
    { return std::unique_ptr<loadable::Service>(entry.make == nullptr ? nullptr : entry.make()); };
    if (auto service = calling("the service's factory", made))
      return service;
  }
  catch (const std::exception& error)
  {
    failure = std::string("its factory failed: ") + error.what();
  }
  notLoaded(path, failure);
}

} // namespace

std::filesystem::path sampleService()
{
  return (ownFolder() / SDM_SERVICES / sampleName).lexically_normal();
}

LoadedService::LoadedService(const std::filesystem::path& sharedObject)
    : path(std::filesystem::absolute(sharedObject).lexically_normal()),
      made(make(path)),
      itsName(ask(path, "name", [&] { return made->name(); }))
{
  if (itsName.empty())
    notLoaded(path, "its name is empty");
}

const std::filesystem::path& LoadedService::file() const
{
  return path;
}

loadable::Service& LoadedService::service()
{
  return *made;
}

void LoadedService::makeAnew()
{
  made.reset();
  made = make(path);
}

const std::string& LoadedService::name() const
{
  return itsName;
}

std::vector<host::SchemaDefinition> LoadedService::provisioning() const
{
  return ask(path, "provisioning", [&] { return made->provisioning(); });
}

std::filesystem::path LoadedService::itemMap() const
{
  const auto places = ask(path, "itemMaps", [&] { return made->itemMaps(); });
  for (const std::filesystem::path& place : places)
  {
    std::error_code unknown;
    std::filesystem::path map = (path.parent_path() / place).lexically_normal();
    if (std::filesystem::exists(map, unknown))
      return map;
  }
  if (places.empty())
    throw StartError("the service " + path.string() + " brings no item map; name one with --map");
  throw StartError("the item map of the service " + path.string() + " is not at " +
                   (path.parent_path() / places.front()).lexically_normal().string() + "; name one with --map");
}

} // namespace cli
