// The dictionary of the local management store, which its records read where it lies.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "Workload.h"

namespace bench
{

class Dictionary
{
public:
  /// Takes the place of the one before for as long as it lives.
  explicit Dictionary(const Workload& workload);
  ~Dictionary();
  Dictionary(const Dictionary&) = delete;
  Dictionary& operator=(const Dictionary&) = delete;

  /// The one that lives, or null.
  static const Dictionary* current();

  /// The value of "/item[NUMBER]/FIELD", or null.
  const std::string* find(const std::string& key) const;

private:
  std::vector<std::array<std::string, 11>> items;
};

} // namespace bench
