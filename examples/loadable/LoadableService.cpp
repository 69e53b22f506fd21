// The service as a shared object: whoever loads it has the manager, and the service brings the rest.
#include "CallLog.h"
#include "GroupValidator.h"
#include "LiveValues.h"
#include "SettingCallbacks.h"
#include "Settings.h"
#include "loadable/Service.h"

namespace commsservice
{
namespace
{

class LoadableService : public loadable::Service
{
public:
  std::string name() const override
  {
    return "CommsService";
  }

  /// Beside the shared object in a build, in the share folder when installed; libraries of several architectures lie
  /// one folder deeper.
  std::vector<std::filesystem::path> itemMaps() const override
  {
    return {"CommsSettings.csv", "../../share/ServiceDataManager/CommsSettings.csv",
            "../../../share/ServiceDataManager/CommsSettings.csv"};
  }

  ValidatorIfc* validator() override
  {
    return &groups;
  }

  void registerCallbacks(ServiceDataManagerIfc& manager) override
  {
    commsservice::registerCallbacks(manager, live, calls, groups);
  }

private:
  LiveValues live{settings()};
  CallLog calls;
  GroupValidator groups{groupRules(), live, calls};
};

} // namespace
} // namespace commsservice

SDM_SERVICE(commsservice::LoadableService)
