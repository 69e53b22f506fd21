// The one exception of the host platform.
#pragma once

#include <stdexcept>
#include <string>

#include "host/HostExport.h"

namespace host
{
/// A file, folder or definition that the host platform cannot work with. `what()` names it and says why, in words that
/// an operator can act on; it never holds an item's value.
class SDM_HOST_EXPORT Error : public std::runtime_error
{
public:
  using std::runtime_error::runtime_error;
};

/// What the operator can do about the system's error with this number, such as "; make room on its disk"; empty where
/// there is nothing to be said.
SDM_HOST_EXPORT std::string remedyOf(int errorNumber);
} // namespace host
