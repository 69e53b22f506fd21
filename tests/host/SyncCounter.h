// Counts how often the process asked for its files to reach the disk, and can make the disk fail.
#pragma once

namespace hosttest
{
/// Calls of fsync and fdatasync since the start, by whatever library.
int syncCount();

/// For whoever lists calls; comes before the file is synced.
void noteSync(int descriptor);

/// While it lives every fsync and fdatasync fails, behind so many that do not.
class FailingSync
{
public:
  explicit FailingSync(int goodOnes = 0);
  ~FailingSync();
  FailingSync(const FailingSync&) = delete;
  FailingSync& operator=(const FailingSync&) = delete;

  /// Whether one failed.
  bool happened() const;
};
} // namespace hosttest
