// The error that ends a subcommand with `exitCannot`.
#pragma once

#include <stdexcept>

namespace cli
{

/// What, which file, why, and what to do about it, in one line for the operator.
class StartError : public std::runtime_error
{
public:
  using std::runtime_error::runtime_error;
};

} // namespace cli
