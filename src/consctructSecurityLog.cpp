#include "consctructSecurityLog.h"

#include <ClientUtils.h>

#include "ServiceDataManagerIfc.h"
#include "isEncrypted.h"

std::string consctructSecurityLog(ManagedDataItem* item, const std::string& value)
{
  std::string record = item->dasSchema;
  if (!item->dasIndexName.empty())
    record += " " + item->dasIndexName + ":" + item->dasIndexValue;
  record += " set " + item->dasItem;
  record += sdm::isEncrypted(*item) ? "(***)" : "(" + ClientUtils::escapeXMLString(value) + ")";
  return record;
}
