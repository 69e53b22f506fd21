// The victim: changes a device's files in a loop, and says which change was answered as done. Every change writes its
// number to several places at once.
#include <ManageableData.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <string>

#include "host/DataAccessService.h"
#include "host/Error.h"
#include "host/LocalMgmtStore.h"

namespace
{
std::string updateRequest(const std::string& number)
{
  std::string entries;
  for (const char* row : {"1", "2", "3"})
    entries += std::string("<Entry><Idx>") + row + "</Idx><A>" + number + "</A><B>" + number + "</B></Entry>";
  return "<Schema name=\"Rows\"><ReasonForMessage>update_request</ReasonForMessage>" + entries + "</Schema>";
}

bool writeToDas(host::DataAccessService& das, const std::string& number)
{
  const std::string request = updateRequest(number);
  return das.sendRequest(request.data(), request.size()).find("update_response") != std::string::npos;
}

bool writeToStore(host::LocalMgmtStore& store, const std::string& number)
{
  ManageableData data;
  for (const char* rootId : {"a", "b", "c"})
    data.populate(rootId, rootId, number);
  return store.publishData(data);
}

/// One write, so that a number is told whole or not at all.
void tell(const std::string& number)
{
  const std::string line = number + "\n";
  if (::write(STDOUT_FILENO, line.data(), line.size()) != static_cast<ssize_t>(line.size()))
    std::_Exit(3);
}
} // namespace

int main(int count, char** arguments)
{
  if (count != 3)
    return 2;
  try
  {
    const std::filesystem::path folder = arguments[1];
    host::DataAccessService das(folder / "das.db");
    das.provision({{"Rows", "Idx", {"A", "B"}, {"1", "2", "3"}}});
    host::LocalMgmtStore store(folder / "ocms.db");
    for (long i = std::stol(arguments[2]);; ++i)
    {
      const std::string number = std::to_string(i);
      if (!writeToDas(das, number) || !writeToStore(store, number))
        return 4;
      tell(number);
    }
  }
  catch (const host::Error& error)
  {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
