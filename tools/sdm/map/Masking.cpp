// An item is a secret when the map encrypts it or when the platform masks its name.
#include "Masking.h"

#include "base/Shown.h"
#include "host/Secrets.h"

namespace cli
{

Masking::Masking(const ItemTable& items)
{
  for (const MapItem& item : items.items())
  {
    if (item.encrypted)
      host::markSecret(item.rootId);
    if (isSecret(item))
      columns.insert(item.column);
  }
}

bool Masking::isSecret(const MapItem& item) const
{
  return item.encrypted || host::isSecret(item.rootId);
}

bool Masking::isSecret(const std::string& rootId) const
{
  return host::isSecret(rootId);
}

bool Masking::isSecretElement(const std::string& name) const
{
  return columns.count(name) != 0 || host::isSecret(name);
}

std::string Masking::value(const MapItem& item, const std::string& text) const
{
  return isSecret(item) ? mask : shownValue(text);
}

} // namespace cli
