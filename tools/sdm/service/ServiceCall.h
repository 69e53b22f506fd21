// Calls code of a service. Whatever it throws becomes a text that may be shown.
#pragma once

#include <exception>
#include <stdexcept>
#include <string>

#include <cxxabi.h>

#include "CallListener.h"
#include "CurrentCallback.h"

namespace cli
{

/// The type of the exception that is being handled, as a program writes it: "int".
std::string thrownType();

/// What `call` of a callback answers. `where` names it, as in "setter setVolume of item audio.volume". What it throws
/// passes on as it is when it is a `std::exception` whose text may be told; otherwise a `std::runtime_error` of what
/// may be told passes on, and of what is no `std::exception` one that names the place and the type.
template <typename Call>
auto calling(const std::string& where, const Call& call, const CallListener& listener)
{
  const CurrentCallback current(where);
  std::string text;
  try
  {
    return call();
  }
  catch (const abi::__forced_unwind&)
  {
    throw; // The end of a thread is no failure, and must not be stopped.
  }
  catch (const std::exception& error)
  {
    text = listener.tellable(error.what());
    if (text == error.what())
      throw;
  }
  catch (...)
  {
    text = where + " threw " + thrownType() + ", which is no std::exception";
  }
  throw std::runtime_error(text);
}

/// The same, of what has no secret to tell.
template <typename Call>
auto calling(const std::string& where, const Call& call)
{
  return calling(where, call, CallListener());
}

} // namespace cli
