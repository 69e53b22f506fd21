// Stands in for SQLite's function in the whole test program.
#include "PrepareCounter.h"

#include <dlfcn.h>
#include <sqlite3.h>

#include <algorithm>
#include <mutex>
#include <utility>
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

struct Plan
{
  std::string text;
  std::function<void()> action;
  bool fails = false;
  bool happened = false;
};

thread_local Plan* plan = nullptr;

/// Whether the statement is to fail.
bool stepsIn(const std::string& sql)
{
  if (plan == nullptr || sql.rfind(plan->text, 0) != 0)
    return false;
  plan->happened = true;
  if (const auto action = std::exchange(plan->action, nullptr))
    action();
  return plan->fails;
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
  if (stepsIn(sql))
    return real(database, "SELECT failing_on_demand", -1, statement, tail);
  return real(database, sql, length, statement, tail);
}

int hosttest::preparedCount(const std::string& part)
{
  const std::lock_guard<std::mutex> lock(prepared().mutex);
  const std::vector<std::string>& texts = prepared().texts;
  return static_cast<int>(std::count_if(
      texts.begin(), texts.end(), [&part](const std::string& text) { return text.find(part) != std::string::npos; }));
}

hosttest::AtStatement::AtStatement(const std::string& text, std::function<void()> action)
{
  const bool fails = action == nullptr;
  plan = new Plan{text, std::move(action), fails};
}

hosttest::AtStatement::~AtStatement()
{
  delete std::exchange(plan, nullptr);
}

bool hosttest::AtStatement::happened() const
{
  return plan->happened;
}
