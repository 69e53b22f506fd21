#include "LiveValues.h"

namespace commsservice
{

LiveValues::LiveValues(const std::vector<Setting>& settings)
{
  for (const Setting& setting : settings)
  {
    if (setting.rows == 0)
      values[{setting.name, ""}] = setting.initial;
    for (int row = 1; row <= setting.rows; ++row)
      values[{setting.name, std::to_string(row)}] = setting.initial;
  }
}

bool LiveValues::has(const std::string& setting, const std::string& row) const
{
  const std::lock_guard<std::mutex> hold(mutex);
  return values.count({setting, row}) != 0;
}

std::string LiveValues::get(const std::string& setting, const std::string& row) const
{
  const std::lock_guard<std::mutex> hold(mutex);
  const auto found = values.find({setting, row});
  return found == values.end() ? std::string() : found->second;
}

void LiveValues::set(const std::string& setting, const std::string& row, const std::string& value)
{
  const std::lock_guard<std::mutex> hold(mutex);
  const auto found = values.find({setting, row});
  if (found != values.end())
    found->second = value;
}

} // namespace commsservice
