// The operator's program: does what its command line asks for.
#include <exception>
#include <iostream>

#include "base/Arguments.h"
#include "base/ExceptionText.h"
#include "base/Shown.h"
#include "base/StandardStreams.h"

namespace cli
{
namespace
{

ExitCode program(int argc, char** argv)
{
  try
  {
    const auto arguments = readArguments(argc, argv);
    if (const auto* code = std::get_if<ExitCode>(&arguments))
      return *code;
    return std::get<Action>(arguments)();
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
} // namespace cli

int main(int argc, char** argv)
{
  cli::holdStandardDescriptors();
  cli::reportFileSizeLimit();
  cli::useUtf8();
  const cli::ExitCode code = cli::program(argc, argv);
  return cli::finishOutput() || code != cli::exitDone ? code : cli::exitRefused;
}
