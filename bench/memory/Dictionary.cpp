#include "Dictionary.h"

#include <cstddef>
#include <cstdlib>
#include <string_view>

namespace bench
{

namespace
{

const Dictionary* living = nullptr;

/// In the order in which a workload lists them.
constexpr std::array<std::string_view, 11> fields = {"rootId",        "dasSchema",   "dasItem",     "dasIndexName",
                                                     "dasIndexValue", "default",     "setter",      "getter",
                                                     "userData",      "isGroupItem", "dasEncrypted"};

} // namespace

Dictionary::Dictionary(const Workload& workload) : items(workload.items.size())
{
  std::size_t place = 0;
  for (auto& [key, value] : workload.dictionary())
  {
    items[place / fields.size()][place % fields.size()] = value;
    ++place;
  }
  living = this;
}

Dictionary::~Dictionary()
{
  if (living == this)
    living = nullptr;
}

const Dictionary* Dictionary::current()
{
  return living;
}

const std::string* Dictionary::find(const std::string& key) const
{
  const std::size_t open = key.find('[');
  const std::size_t slash = key.find("]/");
  if (open == std::string::npos || slash == std::string::npos)
    return nullptr;
  const std::size_t number = std::strtoul(key.c_str() + open + 1, nullptr, 10);
  if (number == 0 || number > items.size())
    return nullptr;
  const std::string_view field = std::string_view(key).substr(slash + 2);
  for (std::size_t i = 0; i < fields.size(); ++i)
  {
    if (fields[i] == field)
      return &items[number - 1][i];
  }
  return nullptr;
}

} // namespace bench
