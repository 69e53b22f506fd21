#include "Classes.h"

#include <algorithm>
#include <iomanip>
#include <map>

namespace judge
{

namespace
{

/// A class, and texts of which a single line of the trace holds all.
struct Class
{
  const char* name;
  std::vector<const char*> texts;
};

const std::vector<Class>& classes()
{
  static const std::vector<Class> all = {
      {"a default pushed", {"set "}},
      {"an item spared by its prefix", {"setter not called"}},
      {"a group validated", {"validateGroup("}},
      {"a group refused in a set request", {"log 2 setData failed because"}},
      {"a group refused at a start", {"log 2 initialiseCacheItems", "failed validation"}},
      {"a group refused in an import", {"log 2 importFromDAS", "  group: "}},
      {"a group refused in a reload", {"log 2 reloadUserData failed"}},
      {"a group without a validator", {"validation ifc not found"}},
      {"a group reloaded", {"reloadGroup("}},
      {"a group's items", {"getValidGroupItems("}},
      {"a group's item that is not known", {" is NULL"}},
      {"a group's item without a column", {"das item name NOT found"}},
      {"an encrypted value written", {"toEncryptedText("}},
      {"an encrypted value read", {"fromEncryptedText("}},
      {"a value that cannot be decrypted", {"log 2 decryptData failed"}},
      {"a whole schema read", {"sendRequest(", "</ReasonForMessage></Schema>", "read_request"}},
      {"a column read", {"sendRequest(", "</ResultCols></Schema>"}},
      {"a row read", {"sendRequest(", "</ResultCols><Entry>"}},
      {"an update request", {"sendRequest(", "update_request"}},
      {"an update request with a row", {"sendRequest(", "update_request", "<Entry>"}},
      {"an update request without a schema", {"sendRequest(", "<Schema name=\"\">", "update_request"}},
      {"a malformed reply", {"log 2 parser error"}},
      {"an import from a bad reply", {"log 3 importFromDAS bad XML"}},
      {"a read from a bad reply", {"log 3 getData bad XML"}},
      {"a reset with a bad reply", {"log 3 setDefaultUserData bad XML"}},
      {"an update with a bad reply", {"log 2 sendDASRequests bad XML"}},
      {"a security log record", {"logSecurityEvent("}},
      {"a security log record of a failure", {"logSecurityEvent(", "failed"}},
      {"a security log record of an encrypted item", {"logSecurityEvent(", "(***)"}},
      {"a refusal during an import", {"log 3 setSingleDataItem set"}},
      {"an unknown item in a set request", {"reject ", "unknown item"}},
      {"an item without a setter in a set request", {"reject ", "no setter available"}},
      {"a refused value", {"reject ", "|refused"}},
      {"an unchanged value", {"reject ", "UNCHANGED_DATA"}},
      {"a masked value", {"log ", "***"}},
      {"an unknown item in a get request", {"log 2 getData(", "unknown item"}},
      {"a change of a local item", {"log 4 manageableDataChanged"}},
      {"a change of an unknown item", {"log 2 manageableDataChanged unknown"}},
      {"a change of an item without a setter", {"log 3 manageableDataChanged no setter"}},
      {"an import from the store", {"log 5 importFromOCMS got"}},
      {"a subscription", {"subscribe("}},
      {"a refused subscription", {"log 2 subscribeForObservations Failed"}},
      {"a refused lookup of the import", {"log 2 importFromOCMS OCMS lookup failed"}},
      {"a map that the store does not have", {"log 2 setAllManagedData OCMS lookup failed"}},
      {"a map from the store", {"log 5 setAllManagedData id="}},
      {"a map line of too few columns", {"fewer than 12 columns"}},
      {"a map line that is too long", {"longer than 500 characters"}},
      {"a publication", {"publishData("}},
      {"changes counted", {"log 5 publishChanges"}},
      {"a check of user data", {"checkData("}},
      {"no store at a start", {"log 2 importFromOCMS Can't find"}},
      {"no store for the map", {"log 2 setAllManagedData Can't find"}},
      {"no store for a publication", {"log 2 publishChanges - no OCMS"}},
      {"no store for a reset", {"log 2 setDefaultUserData Can't find OCMS"}},
      {"no database for a reset", {"log 2 setDefaultUserData Can't find Data"}},
      {"no database for an import", {"log 2 importFromDAS Can't find"}},
      {"no database for a single import", {"log 2 importItemFromDAS Can't find"}},
      {"no database for a get request", {"log 2 getData(", "Can't find"}},
      {"a value reported as not changed", {"reject ", "NOT_CHANGED"}},
      {"an encrypted default written", {"sendRequest(", "update_request", "c0de"}},
      {"a throw that leaves an operation", {"threw what was thrown on purpose"}},
      {"a reply that ends with a column's name", {"threw out_of_range"}},
      {"a deleted setter", {"delete setter"}},
      {"a deleted getter", {"delete getter"}},
      {"a registration", {"registerService("}},
      {"the interface count", {"getInterfaceCount("}},
      {"an answer", {"result true"}},
      {"an item found", {"result \"", "\"\""}},
      {"a callback without a name", {"without a name"}},
  };
  return all;
}

/// Where incidents have to have happened, each with a throw and with a call back.
const std::vector<const char*> places = {"set ",
                                         "get ",
                                         "findService(\"D",
                                         "findService(\"P",
                                         "findService(\"L",
                                         "findService(\"S",
                                         "sendRequest(",
                                         "getInterfaceCount(",
                                         "lookupData(",
                                         "subscribe(",
                                         "publishData(",
                                         "checkData(",
                                         "registerService(",
                                         "validateGroup(",
                                         "clearGroup(",
                                         "reloadGroup(",
                                         "getValidGroupItems(",
                                         "logSecurityEvent("};

std::map<std::string, unsigned long>& counts()
{
  static std::map<std::string, unsigned long> counted;
  return counted;
}

bool holdsAll(const std::string& line, const Class& sought)
{
  for (const char* text : sought.texts)
  {
    if (line.find(text) == std::string::npos)
      return false;
  }
  return true;
}

bool belongs(const Trace& trace, const Class& sought)
{
  for (const auto& step : trace)
  {
    for (const std::string& line : step)
    {
      if (holdsAll(line, sought))
        return true;
    }
  }
  return false;
}

} // namespace

void classify(const Life& life, const Trace& trace)
{
  for (const Class& sought : classes())
    counts()[sought.name] += belongs(trace, sought) ? 1U : 0U;
  for (const char* place : places)
  {
    for (const char* incident : {"throws inside ", "calls back inside "})
    {
      const std::string beginning = std::string(incident) + place;
      counts()[beginning] += belongs(trace, {"", {beginning.c_str()}}) ? 1U : 0U;
    }
  }
  for (unsigned what = 0; what <= static_cast<unsigned>(Do::noMapFile); ++what)
  {
    const auto done = [&](const Step& step) { return step.what == static_cast<Do>(what); };
    counts()["step " + nameOf(static_cast<Do>(what))] +=
        std::any_of(life.steps.begin(), life.steps.end(), done) ? 1U : 0U;
  }
}

bool reportClasses(std::ostream& out)
{
  out << "lives with\n";
  bool everywhere = true;
  for (const auto& [name, number] : counts())
  {
    out << std::setw(8) << number << ' ' << name << '\n';
    everywhere = everywhere && number > 0;
  }
  for (const auto& [name, number] : counts())
  {
    if (number == 0)
      out << "never: " << name << '\n';
  }
  return everywhere;
}

} // namespace judge
