// What tests see of a management record beyond its contract.
#pragma once

#include <string>
#include <vector>

#include <ManageableData.h>

namespace recording
{

/// The refusals, each as "rootId|name|reason".
std::vector<std::string> rejectReasons(const ManageableData& data);

/// Adds a root id even if it is there already, as a record of another make might.
void repeatRootId(ManageableData& data, const std::string& rootId);

/// While it lives, what is done to records is the platform's own doing and is not noted.
class UntracedRecords
{
public:
  UntracedRecords();
  ~UntracedRecords();
  UntracedRecords(const UntracedRecords&) = delete;
  UntracedRecords& operator=(const UntracedRecords&) = delete;

private:
  const bool before;
};

/// The record's root ids and values as "a=1,b=2".
std::string describe(ManageableData& data);

} // namespace recording
