// The operator's program: does what its command line asks for.
#include "base/Arguments.h"
#include "base/Program.h"

int main(int argc, char** argv)
{
  return cli::runProgram([&] { return cli::readArguments(argc, argv); });
}
