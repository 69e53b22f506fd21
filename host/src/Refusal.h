// Why a request is not carried out.
#pragma once

#include <stdexcept>

namespace host
{
/// Ends the work on a request; `what()` goes into the reply and so names things, never values.
class Refusal : public std::runtime_error
{
public:
  using std::runtime_error::runtime_error;
};
} // namespace host
