// A subcommand that is a program of its own, made as those of the product are.
#include <CLI/CLI.hpp>

#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

#include "base/Arguments.h"
#include "base/Program.h"

namespace
{

cli::Action addGreet(CLI::App& app)
{
  const auto name = std::make_shared<std::string>();
  app.add_option("--name", *name, "Whom to greet");
  return [name]
  {
    if (name->empty())
      throw std::runtime_error("there is nobody to greet");
    std::cout << "hello " << *name << "\n";
    return cli::exitDone;
  };
}

} // namespace

int main(int argc, char** argv)
{
  return cli::runProgram([&] { return cli::readArgumentsOf({"greet", "Greet somebody", addGreet}, argc, argv); });
}
