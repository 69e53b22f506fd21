// A device's framework as a service of version 1 meets it: every service of the contract, each telling what it is
// asked.
#pragma once

#include <cstdio>
#include <map>
#include <stdexcept>
#include <string>

#include <DataAccessServiceIfc.h>
#include <LocalMgmtIfc.h>
#include <ManageableData.h>
#include <MgmtAgentIfc.h>
#include <PhysicalInterfaceServiceIfc.h>
#include <SecurityLogServiceIfc.h>
#include <SvcRTEContext.h>
#include <ValidatorIfc.h>

#include <ServiceDataManagerIfc.h>

namespace v1
{

inline void tell(const std::string& what)
{
  std::printf("%s\n", what.c_str());
}

class Das : public DataAccessServiceIfc
{
public:
  std::string sendRequest(const char* request, size_t length) override
  {
    const std::string text(request, length);
    tell("das " + text);
    const bool update = text.find("update_request") != std::string::npos;
    return update ? R"(<Schema name="Audio"><ReasonForMessage>update_response</ReasonForMessage></Schema>)" : reading;
  }

  std::string reading = R"(<Schema name="Audio"><ReasonForMessage>read_response</ReasonForMessage>)"
                        R"(<Volume>6</Volume><Tone>chime</Tone></Schema>)";
};

class Interfaces : public PhysicalInterfaceServiceIfc
{
public:
  uint32_t getInterfaceCount() override
  {
    return 3;
  }
};

class Store : public LocalMgmtIfc
{
public:
  bool registerService(const std::string& serviceName, MgmtAgentIfc* agent, int version) override
  {
    tell("register " + serviceName + " " + (agent != nullptr ? "agent " : "") + std::to_string(version));
    return true;
  }

  bool lookupData(ManageableData& data) override
  {
    const std::string dictionary = data.getRootId();
    tell("lookup " + dictionary);
    for (const auto& [key, value] : entries)
      data.populate(dictionary.empty() ? "name" : dictionary, dictionary.empty() ? "name" : key, value);
    return true;
  }

  bool subscribe(std::list<std::string>& rootIds, MgmtAgentIfc* agent) override
  {
    for (const std::string& rootId : rootIds)
      tell("subscribe " + rootId + (agent != nullptr ? " agent" : ""));
    return true;
  }

  bool publishData(ManageableData& data) override
  {
    std::vector<std::string> rootIds;
    data.getRootIds(rootIds);
    for (const std::string& rootId : rootIds)
    {
      std::string value;
      data.interogate(rootId, rootId, value);
      tell("publish " + rootId + " " + value);
    }
    return true;
  }

  bool checkData(ManageableData&, void* context) override
  {
    tell(context == nullptr ? "check" : "check with a context");
    return true;
  }

  std::map<std::string, std::string> entries;
};

class SecurityLog : public SecurityLogServiceIfc
{
public:
  void logSecurityEvent(time_t, int facility, int severity, int eventType, int eventClass, bool failed,
                        std::string record, std::string, std::string) override
  {
    tell("security " + std::to_string(facility) + std::to_string(severity) + std::to_string(eventType) +
         std::to_string(eventClass) + (failed ? " failed " : " ") + record);
  }
};

class Context : public SvcRTEContext
{
public:
  Executable* findService(const std::string& interfaceName) override
  {
    tell("find " + interfaceName);
    return services.count(interfaceName) != 0 ? services[interfaceName] : nullptr;
  }

  std::map<std::string, Executable*> services;
};

class Validator : public ValidatorIfc
{
public:
  std::vector<std::pair<std::string, std::string>> getValidGroupItems(const std::string& group) override
  {
    tell("items of " + group);
    return {{"tone", tone}};
  }
  void clearGroup(const std::string& group) override
  {
    tell("clear " + group);
  }
  bool validateGroup(std::string& reason, const std::string& group) override
  {
    tell("validate " + group);
    reason = "no such tone";
    return tone != "noise";
  }
  void reloadGroup(const std::string& group) override
  {
    tell("reload " + group);
  }

  std::string tone;
};

class Agent : public MgmtAgentIfc
{
public:
  void observedDataChanged(ManageableData&) override
  {
    tell("observed");
  }
};

/// Keeps what it is told, and refuses or throws when the value says so.
class Setter : public ManagedItemSetter
{
public:
  Setter(std::string itemName, std::string& kept) : name(std::move(itemName)), target(kept)
  {
  }
  ~Setter() override
  {
    tell("setter of " + name + " ends");
  }
  bool setValue(const std::string& value, const std::string& indexValue, std::string& error) override
  {
    tell("set " + name + " " + value + indexValue);
    if (value == "throw")
      throw std::runtime_error("thrown by the service");
    error = value == "99" ? "too loud" : "";
    if (error.empty())
      target = value;
    return error.empty();
  }

private:
  std::string name;
  std::string& target;
};

class Getter : public ManagedItemGetter
{
public:
  explicit Getter(std::string& kept) : source(kept)
  {
  }
  ~Getter() override
  {
    tell("getter ends");
  }
  std::string getValue(const std::string&) override
  {
    return source;
  }

private:
  std::string& source;
};

} // namespace v1
