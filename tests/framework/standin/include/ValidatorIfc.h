// The owning service's judgement on groups.
#pragma once

#include <string>
#include <utility>
#include <vector>

class ValidatorIfc
{
public:
  virtual ~ValidatorIfc()
  {
  }
  virtual std::vector<std::pair<std::string, std::string>> getValidGroupItems(const std::string& group) = 0;
  virtual void clearGroup(const std::string& group) = 0;
  virtual bool validateGroup(std::string& reason, const std::string& group) = 0;
  virtual void reloadGroup(const std::string& group) = 0;
};
