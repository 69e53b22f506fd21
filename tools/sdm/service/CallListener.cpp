// The exception that is being handled: its type and its words, whatever was thrown.
#include "CallListener.h"

#include <cxxabi.h>

#include <cstdlib>
#include <exception>
#include <memory>
#include <typeinfo>

#include "ServiceCall.h"

namespace cli
{

std::string thrownType()
{
  const std::type_info* type = abi::__cxa_current_exception_type();
  if (type == nullptr)
    return "something of another language";
  int problem = 0;
  const std::unique_ptr<char, decltype(&std::free)> name(abi::__cxa_demangle(type->name(), nullptr, nullptr, &problem),
                                                         &std::free);
  return problem == 0 && name ? name.get() : type->name();
}

std::string thrownText()
{
  try
  {
    throw;
  }
  catch (const std::exception& error)
  {
    return error.what();
  }
  catch (...)
  {
    return "something that is no std::exception";
  }
}

} // namespace cli
