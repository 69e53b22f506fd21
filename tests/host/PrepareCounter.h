// Counts how often SQLite is asked to prepare a statement, by whatever library, and can step in at one of them.
#pragma once

#include <functional>
#include <string>

namespace hosttest
{
/// How many statements whose text holds `part` were prepared since the start of the program.
int preparedCount(const std::string& part);

/// While it lives, `action` runs once: before this thread prepares a statement whose text begins with `text`. Without
/// an action that statement fails, as does each later one. A statement that the database keeps prepared is passed over.
class AtStatement
{
public:
  explicit AtStatement(const std::string& text, std::function<void()> action = nullptr);
  ~AtStatement();
  AtStatement(const AtStatement&) = delete;
  AtStatement& operator=(const AtStatement&) = delete;

  /// Whether it came to that statement.
  bool happened() const;
};
} // namespace hosttest
