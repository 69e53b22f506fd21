// A service that works: a volume, a code of two members, and a column that only the service itself knows of.
#include <ServiceDataManagerIfc.h>
#include <ValidatorIfc.h>

#include <map>

#include "loadable/Service.h"

namespace
{

/// The code and its length have to agree.
class Code : public ValidatorIfc
{
public:
  std::vector<std::pair<std::string, std::string>> getValidGroupItems(const std::string&) override
  {
    return {pending.begin(), pending.end()};
  }
  void clearGroup(const std::string&) override
  {
    pending.clear();
  }
  bool validateGroup(std::string& reason, const std::string& group) override
  {
    std::map<std::string, std::string> proposed = current;
    for (const auto& [rootId, value] : pending)
      proposed[rootId] = value;
    if (std::to_string(proposed["bell.code"].size()) != proposed["bell.codeLength"])
    {
      reason = group + ": the code has another length";
      return false;
    }
    current = proposed;
    return true;
  }
  void reloadGroup(const std::string&) override
  {
  }

  std::map<std::string, std::string> pending;
  std::map<std::string, std::string> current{{"bell.code", ""}, {"bell.codeLength", "0"}};
};

class CodeSetter : public ManagedItemSetter
{
public:
  CodeSetter(Code& itsCode, const char* itsRootId) : code(itsCode), rootId(itsRootId)
  {
  }
  bool setValue(const std::string& value, const std::string&, std::string& error) override
  {
    if (value.find_first_not_of("0123456789") != std::string::npos)
    {
      error = "must be digits";
      return false;
    }
    code.pending[rootId] = value;
    return true;
  }

private:
  Code& code;
  const std::string rootId;
};

class Volume : public ManagedItemSetter
{
public:
  explicit Volume(std::string& itsVolume) : volume(itsVolume)
  {
  }
  bool setValue(const std::string& value, const std::string&, std::string& error) override
  {
    if (value.size() != 1)
    {
      error = "must be one digit";
      return false;
    }
    volume = value;
    return true;
  }

private:
  std::string& volume;
};

class VolumeGetter : public ManagedItemGetter
{
public:
  explicit VolumeGetter(const std::string& itsVolume) : volume(itsVolume)
  {
  }
  std::string getValue(const std::string&) override
  {
    return volume;
  }

private:
  const std::string& volume;
};

class Doorbell : public loadable::Service
{
public:
  std::string name() const override
  {
    return "Doorbell";
  }
  std::vector<host::SchemaDefinition> provisioning() const override
  {
    return {{"Bell", "", {"Rung"}, {}}};
  }
  ValidatorIfc* validator() override
  {
    return &code;
  }
  void registerCallbacks(ServiceDataManagerIfc& manager) override
  {
    // One object under two names, and a name that is taken already.
    auto* both = std::make_unique<Volume>(volume).release();
    manager.addSetter({"setVolume", both});
    manager.addSetter({"setLoudness", both});
    Volume third(volume);
    manager.addSetter({"setVolume", &third});
    manager.addGetter({"getVolume", std::make_unique<VolumeGetter>(volume).release()});
    manager.addSetter({"setCode", std::make_unique<CodeSetter>(code, "bell.code").release()});
    manager.addSetter({"setCodeLength", std::make_unique<CodeSetter>(code, "bell.codeLength").release()});
  }

private:
  std::string volume;
  Code code;
};

} // namespace

SDM_SERVICE(Doorbell)
