// Callbacks that do next to nothing, so that calling them is all they cost.
#pragma once

#include <memory>

#include "ServiceDataManagerIfc.h"

namespace bench
{

/// Accepts everything.
std::unique_ptr<ManagedItemSetter> makeSetter();

/// Answers the live value.
std::unique_ptr<ManagedItemGetter> makeGetter();

} // namespace bench
