#include "CallListener.h"

#include <exception>

namespace cli
{

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
