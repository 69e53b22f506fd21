// Values of the local management store stand in the files as they are, so folder and files are their owner's alone.
#include "DeviceFolder.h"

#include <fcntl.h>
#include <unistd.h>

#include <system_error>
#include <utility>

#include "Files.h"
#include "host/Error.h"
#include "host/PrivateFiles.h"

namespace host
{
namespace
{
/// Its own entry and those of the folders above, as far as they can be opened: what the operator made in a place that
/// is closed to this process is for him to keep.
void makeFolderLast(const std::filesystem::path& folder)
{
  std::error_code ignored;
  std::filesystem::path path = std::filesystem::canonical(folder, ignored);
  for (; path.has_relative_path(); path = path.parent_path())
  {
    const FileDescriptor above(::open(path.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (above.isOpen())
      ::fsync(above.number());
  }
}
} // namespace

std::filesystem::path existingFolder(const std::filesystem::path& folder)
{
  const std::error_code failure = makePrivateFolders(folder);
  // A power cut would take the folder with all that is in it.
  makeFolderLast(folder);
  if (!std::filesystem::is_directory(folder))
    throw Error(folder.string() +
                ": the device folder cannot be made: " + (failure ? failure.message() : "it is no folder"));
  return folder;
}

std::vector<std::string> closedToOthers(const std::filesystem::path& folder)
{
  std::vector<std::string> sentences = closeToOthers(folder, {"das.db", "ocms.db", "das.key", "security.log"});
  for (std::string& sentence : closeToOthers(folder / "log", {"device"}))
    sentences.push_back(std::move(sentence));
  if (std::string sentence = openFolder(folder); !sentence.empty())
    sentences.push_back(std::move(sentence));
  return sentences;
}
} // namespace host
