// What the members of each group must have in common.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace commsservice
{

/// Gives the value that a setting would have if the group were accepted.
using Proposal = std::function<std::string(const std::string& setting)>;

/// One group of the item map.
struct GroupRule
{
  std::string name;
  /// Why the values do not go together, for the operator; empty when they do. Secrets are not quoted.
  std::function<std::string(const Proposal& proposed)> judge;
};

/// An address with its mask and gateway, the ends of a port range, a user name with its password.
std::vector<GroupRule> groupRules();

} // namespace commsservice
