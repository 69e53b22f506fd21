// Stands in for SQLite's function in the whole test program.
#include "PrepareCounter.h"

#include <dlfcn.h>
#include <sqlite3.h>

#include <algorithm>
#include <mutex>
#include <vector>

namespace
{
struct Prepared
{
  std::mutex mutex;
  std::vector<std::string> texts;
};

Prepared& prepared()
{
  static auto* const state = new Prepared;
  return *state;
}
} // namespace

extern "C" __attribute__((visibility("default"))) int sqlite3_prepare_v2(sqlite3* database, const char* sql, int length,
                                                                         sqlite3_stmt** statement, const char** tail)
{
  static const auto real = reinterpret_cast<decltype(&sqlite3_prepare_v2)>(::dlsym(RTLD_NEXT, "sqlite3_prepare_v2"));
  {
    const std::lock_guard<std::mutex> lock(prepared().mutex);
    prepared().texts.emplace_back(sql);
  }
  return real(database, sql, length, statement, tail);
}

int hosttest::preparedCount(const std::string& part)
{
  const std::lock_guard<std::mutex> lock(prepared().mutex);
  const std::vector<std::string>& texts = prepared().texts;
  return static_cast<int>(std::count_if(
      texts.begin(), texts.end(), [&part](const std::string& text) { return text.find(part) != std::string::npos; }));
}
