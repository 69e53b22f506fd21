// Written beside the old copy, synced and renamed.
#include "MapCopy.h"

#include <string>

#include "ItemTable.h"
#include "base/ReplacedFile.h"
#include "base/StartError.h"
#include "base/WholeFile.h"
#include "host/Error.h"

namespace cli
{

void copyMap(const std::filesystem::path& source, const std::filesystem::path& target)
{
  const std::string content = mapContent(source);
  try
  {
    replaceFile(target, content);
  }
  catch (const Unusable& error)
  {
    throw StartError("the device's item map " + target.string() + " cannot be written: " + error.what() +
                     host::remedyOf(error.reason) + ", or choose another folder with --device");
  }
}

} // namespace cli
