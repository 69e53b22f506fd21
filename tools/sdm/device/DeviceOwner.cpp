// The name of the service stands in a file of the folder, written at the first start.
#include "DeviceOwner.h"

#include <cerrno>

#include "base/JsonText.h"
#include "base/ReplacedFile.h"
#include "base/StartError.h"
#include "base/WholeFile.h"
#include "host/Error.h"

namespace cli
{
namespace
{

using Json = nlohmann::ordered_json;

constexpr const char* fileName = "service.json";

/// Names of files may be any bytes.
std::string textOf(const Json& content)
{
  return jsonText(content, 2) + "\n";
}

std::string field(const Json& content, const char* name)
{
  const auto found = content.is_object() ? content.find(name) : content.end();
  return found != content.end() && found->is_string() ? found->get<std::string>() : "";
}

} // namespace

DeviceOwner::DeviceOwner(const std::filesystem::path& deviceFolder, const LoadedService& service, bool takesOver)
    : file(deviceFolder / fileName)
{
  read();
  if (owner.empty() || owner == service.name() || takesOver)
    return;
  throw StartError("the device folder " + deviceFolder.string() + " belongs to the service " + owner + " (" +
                   ownersFile + "), not to " + service.name() + " (" + service.file().string() +
                   "); choose another folder with --device, name that service with --service, or hand the folder over "
                   "with --take-over");
}

void DeviceOwner::read()
{
  try
  {
    content = wholeFile(file);
    const Json fields = jsonOf(content);
    owner = field(fields, "service");
    ownersFile = field(fields, "file");
    if (owner.empty())
      throw JsonError("it names no service");
  }
  catch (const Unusable& error)
  {
    if (error.reason != ENOENT && error.reason != ENOTDIR)
      unreadable = error.what();
  }
  catch (const JsonError& error)
  {
    unreadable = error.what();
  }
  if (!unreadable.empty())
    unreadable = file.string() + ", which tells whose folder this is, cannot be read: " + unreadable +
                 "; it is written anew once the service has started, so nothing is to be done";
}

std::string DeviceOwner::remember(const LoadedService& service, const std::filesystem::path& map) const
{
  const std::string now =
      textOf({{"service", service.name()}, {"file", service.file().string()}, {"map", map.string()}});
  if (now == content)
    return "";
  try
  {
    replaceFile(file, now);
    return "";
  }
  catch (const Unusable& error)
  {
    return file.string() + " cannot be written: " + error.what() + host::remedyOf(error.reason) +
           "; until then another service may take the folder";
  }
}

const std::string& DeviceOwner::trouble() const
{
  return unreadable;
}

} // namespace cli
