// The services of the framework, in memory, and its log.
#include <standin/Runtime.h>

#include <DataAccessServiceIfc.h>
#include <LocalMgmtIfc.h>
#include <ManageableData.h>
#include <PhysicalInterfaceServiceIfc.h>
#include <SecurityLogServiceIfc.h>
#include <logAppUni.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <mutex>

int logLevelOfAllApplications = 3;

Executable::~Executable() = default;
void Executable::execute()
{
  ++state;
}
Dictionary::~Dictionary() = default;
unsigned Dictionary::size() const
{
  return 0;
}

namespace
{

std::vector<std::string> taken;
std::vector<std::string> observed;
std::vector<std::string> records;
std::mutex loggingMutex;
std::vector<std::string> lines;

class Database : public DataAccessServiceIfc
{
public:
  std::string sendRequest(const char* request, size_t length) override
  {
    const std::string text(request, length);
    const bool update = text.find("update_request") != std::string::npos;
    if (update)
      taken.push_back(text);
    return std::string("<Schema><ReasonForMessage>") + (update ? "update" : "read") +
           "_response</ReasonForMessage></Schema>";
  }
  bool connected() const override
  {
    return true;
  }
};

class Store : public LocalMgmtIfc
{
public:
  bool registerService(const std::string&, MgmtAgentIfc*, int version) override
  {
    return version == 1;
  }
  bool lookupData(ManageableData& data) override
  {
    std::vector<std::string> rootIds;
    data.getRootIds(rootIds);
    for (const std::string& rootId : rootIds)
      data.populate(rootId, rootId, "from the store");
    return true;
  }
  bool subscribe(std::list<std::string>& rootIds, MgmtAgentIfc*) override
  {
    observed.insert(observed.end(), rootIds.begin(), rootIds.end());
    return true;
  }
  bool publishData(ManageableData&) override
  {
    return true;
  }
  bool checkData(ManageableData&, void*) override
  {
    return true;
  }
  void flush() override
  {
  }
};

class Hardware : public PhysicalInterfaceServiceIfc
{
public:
  uint32_t getInterfaceCount() override
  {
    return 2;
  }
};

class SecurityLog : public SecurityLogServiceIfc
{
public:
  void logSecurityEvent(time_t, int, int, int, int, bool, std::string record, std::string, std::string) override
  {
    records.push_back(record);
  }
};

class Context : public SvcRTEContext
{
public:
  Executable* findService(const std::string& interfaceName) override
  {
    if (interfaceName == "DataAccessServiceIfc")
      return &database;
    if (interfaceName == "LocalMgmtIfc")
      return &store;
    if (interfaceName == "PhysicalInterfaceServiceIfc")
      return &hardware;
    return interfaceName == "SecurityLogServiceIfc" ? &securityLog : nullptr;
  }
  const char* platformName() const override
  {
    return "stand-in";
  }

private:
  Database database;
  Store store;
  Hardware hardware;
  SecurityLog securityLog;
};

} // namespace

namespace standin
{

SvcRTEContext& context()
{
  static Context only;
  return only;
}

const std::vector<std::string>& updates()
{
  return taken;
}

const std::vector<std::string>& subscriptions()
{
  return observed;
}

const std::vector<std::string>& securityRecords()
{
  return records;
}

std::vector<std::string> logLines()
{
  const std::lock_guard<std::mutex> lock(loggingMutex);
  return lines;
}

} // namespace standin

extern "C" void logAppUni(const char* module, const char*, int level, int, const char* format, ...)
{
  va_list arguments;
  va_start(arguments, format);
  char* text = nullptr;
  const int size = vasprintf(&text, format, arguments);
  va_end(arguments);
  const std::lock_guard<std::mutex> lock(loggingMutex);
  std::fprintf(stderr, "%s %d: %s\n", module, level, size < 0 ? "" : text);
  if (size < 0)
    return;
  lines.emplace_back(text, static_cast<std::size_t>(size));
  std::free(text);
}
