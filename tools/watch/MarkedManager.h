// A manager whose operations and callbacks are known by name: to the lock that somebody waits for, and to the account
// of how long callbacks take.
#pragma once

#include <memory>

#include <ServiceDataManagerIfc.h>

namespace watch
{

/// Passes every operation on to `manager`, marked with its name; setters and getters are marked with the names that
/// they are registered under, the validator's calls with "validator" and the group. All promises of the interface stay:
/// what is registered belongs to the manager, and an object with several names is deleted once. `getItem` tells of
/// items whose callbacks are marked ones.
std::unique_ptr<ServiceDataManagerIfc> marked(std::unique_ptr<ServiceDataManagerIfc> manager);

} // namespace watch
