// Reads the file of accepted changes, and finds a change in it.
#include "Accepted.h"

#include <algorithm>
#include <cerrno>
#include <map>
#include <sstream>

#include "base/JsonText.h"
#include "base/ReplacedFile.h"
#include "base/StartError.h"
#include "base/WholeFile.h"
#include "findings/Formats.h"

namespace cli::diff
{
namespace
{

using findings::Json;

[[noreturn]] void refuse(const std::string& path, const std::string& why)
{
  throw StartError("the accepted changes in " + path + " cannot be used: " + why);
}

std::string textAt(const Json& entry, const char* key)
{
  const auto found = entry.find(key);
  return found != entry.end() && found->is_string() ? found->get<std::string>() : "";
}

std::vector<Acceptance> acceptancesOf(const Json& document, const std::string& path)
{
  const auto list = document.is_object() ? document.find("accepted") : document.end();
  if (!document.is_object() || list == document.end() || !list->is_array())
    refuse(path, "it holds no list of accepted changes; --write-accept writes one");
  if (!document.contains("version") || document["version"] != 1)
    refuse(path, "its version is not 1");
  std::vector<Acceptance> accepted;
  for (const Json& entry : *list)
  {
    if (!entry.is_object() || textAt(entry, "fingerprint").empty())
      refuse(path, "an entry has no fingerprint");
    accepted.push_back(
        {textAt(entry, "fingerprint"), textAt(entry, "rule"), textAt(entry, "text"), textAt(entry, "reason")});
  }
  return accepted;
}

} // namespace

std::vector<Acceptance> acceptedIn(const std::string& path)
{
  try
  {
    return acceptancesOf(jsonOf(wholeFile(path)), path);
  }
  catch (const Unusable& error)
  {
    refuse(path, error.what());
  }
  catch (const JsonError& error)
  {
    refuse(path, error.what());
  }
}

std::vector<Acceptance> acceptedInAny(const std::string& path)
{
  try
  {
    openedRegular(path);
  }
  catch (const Unusable& error)
  {
    if (error.reason == ENOENT)
      return {};
  }
  return acceptedIn(path);
}

void writeAccepted(const std::string& path, const Comparison& comparison, const std::vector<Acceptance>& known)
{
  Json list = Json::array();
  for (const NamedChange& each : comparison.changes)
  {
    const auto before = std::find_if(known.begin(), known.end(),
                                     [&](const Acceptance& entry)
                                     { return entry.fingerprint == each.fingerprint && !entry.reason.empty(); });
    list.push_back({{"fingerprint", each.fingerprint},
                    {"rule", each.change.rule->id},
                    {"text", each.change.text},
                    {"reason", before == known.end() ? "" : before->reason}});
  }
  std::ostringstream text;
  findings::write(text, {{"version", 1}, {"accepted", list}});
  try
  {
    replaceFile(path, text.str());
  }
  catch (const Unusable& error)
  {
    throw StartError("the accepted changes cannot be written to " + path + ": " + error.what());
  }
}

void passOver(Comparison& comparison, const std::vector<Acceptance>& accepted)
{
  std::map<std::string, NamedChange*> changes;
  for (NamedChange& each : comparison.changes)
    changes.emplace(each.fingerprint, &each);
  for (const Acceptance& entry : accepted)
  {
    const auto found = changes.find(entry.fingerprint);
    if (found == changes.end())
      comparison.stale.push_back(entry);
    else
      found->second->accepted = entry.reason;
  }
}

} // namespace cli::diff
