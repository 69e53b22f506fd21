// Nothing that is thrown ends the program unnamed, and lost output is a failure.
#include "Program.h"

#include <exception>
#include <iostream>

#include "ExceptionText.h"
#include "Shown.h"
#include "StandardStreams.h"

namespace cli
{
namespace
{

ExitCode carryOut(const std::function<std::variant<Action, ExitCode>()>& readCommandLine)
{
  try
  {
    const auto read = readCommandLine();
    if (const auto* code = std::get_if<ExitCode>(&read))
      return *code;
    return std::get<Action>(read)();
  }
  catch (const std::exception& error)
  {
    std::cerr << "sdm: " << shown(exceptionText(error)) << "\n";
    return exitCannot;
  }
  catch (...)
  {
    std::cerr << "sdm: failed with something that is no std::exception\n";
    return exitCannot;
  }
}

} // namespace

int runProgram(const std::function<std::variant<Action, ExitCode>()>& readCommandLine)
{
  holdStandardDescriptors();
  reportFileSizeLimit();
  useUtf8();
  const ExitCode code = carryOut(readCommandLine);
  return finishOutput() || code != exitDone ? code : exitRefused;
}

} // namespace cli
