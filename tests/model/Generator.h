// Lives at random, for rapidcheck, which shrinks those that show a difference.
#pragma once

#include <rapidcheck.h>

#include "Life.h"

namespace judge
{

rc::Gen<Life> lives();

} // namespace judge
