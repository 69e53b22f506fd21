// The values that the service works with at this moment.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "Settings.h"

namespace commsservice
{

/// A value per setting and row. May be used from any thread: callbacks write on the manager's thread while the
/// service's own threads read.
class LiveValues
{
public:
  /// Starts with the initial value of every setting.
  explicit LiveValues(const std::vector<Setting>& settings);

  /// Whether the setting has such a row.
  bool has(const std::string& setting, const std::string& row) const;

  /// Empty for a row that is not there.
  std::string get(const std::string& setting, const std::string& row = "") const;

  /// Does nothing for a row that is not there.
  void set(const std::string& setting, const std::string& row, const std::string& value);

private:
  mutable std::mutex mutex;
  std::map<std::pair<std::string, std::string>, std::string> values;
};

} // namespace commsservice
