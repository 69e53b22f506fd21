// Tries a service against a map and prints what was found; fails when that is anything.
#include <exception>
#include <iostream>

#include "service/ServiceCheck.h"

int main(int argc, char** argv)
try
{
  if (argc != 3)
    return 2;
  const auto findings = cli::checkService(argv[1], argv[2]);
  for (const cli::ServiceFinding& each : findings)
    std::cout << each.rootId << " " << each.rule << ": " << each.text << "\n";
  return findings.empty() ? 0 : 1;
}
catch (const std::exception& error)
{
  std::cerr << error.what() << "\n";
  return 3;
}
