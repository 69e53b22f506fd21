// Which items are secrets.
#pragma once

#include <ClientUtils.h>

#include <string>

#include "host/HostExport.h"

namespace host
{
/// From now on `ClientUtils::hidePassword` masks the item of this root id, whatever its name looks like. Lasts for the
/// process. May be called from any thread.
SDM_HOST_EXPORT void markSecret(const std::string& rootId);

/// True for a marked root id and for a name that looks like that of a secret (password, token, PIN and so on, in any
/// case and any way of joining words). When in doubt a name looks secret.
SDM_HOST_EXPORT bool isSecret(const std::string& name);
} // namespace host
