// What can be done about a database that the system keeps from its files.
#include <sqlite3.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include "HostTesting.h"
#include "host/DataAccessService.h"
#include "host/LocalMgmtStore.h"

namespace
{
using hosttest::errorOf;

/// While it lives, the database's library cannot open the file that connections share, for this reason of the system.
class FailingSharedFile
{
public:
  explicit FailingSharedFile(int systemError)
  {
    reason = systemError;
    real = vfs()->xGetSystemCall(vfs(), "open");
    vfs()->xSetSystemCall(vfs(), "open", reinterpret_cast<sqlite3_syscall_ptr>(&open));
  }
  ~FailingSharedFile()
  {
    vfs()->xSetSystemCall(vfs(), "open", real);
  }
  FailingSharedFile(const FailingSharedFile&) = delete;
  FailingSharedFile& operator=(const FailingSharedFile&) = delete;

private:
  using Open = int (*)(const char*, int, int);

  static sqlite3_vfs* vfs()
  {
    return sqlite3_vfs_find(nullptr);
  }
  static int open(const char* file, int flags, int mode)
  {
    const std::string name = file;
    if (name.size() < 4 || name.compare(name.size() - 4, 4, "-shm") != 0)
      return reinterpret_cast<Open>(real)(file, flags, mode);
    errno = reason;
    return -1;
  }

  static inline int reason = 0;
  static inline sqlite3_syscall_ptr real = nullptr;
};

const std::string full = "; make room on its disk";
const std::string notWritable = "; make it and its folder writable";
const std::string unclear = "; look whether its disk is full or broken, and make it and its folder writable";
} // namespace

TEST(AdviceForADatabase, FollowsFromTheErrorOfTheSystem)
{
  const std::vector<std::pair<int, std::string>> advice = {{ENOSPC, full},       {EDQUOT, full},
                                                           {EROFS, notWritable}, {EACCES, notWritable},
                                                           {EPERM, notWritable}, {EIO, unclear}};
  for (const auto& [systemError, sentence] : advice)
  {
    const hosttest::TemporaryFolder folder;
    const auto das = folder / "das.db";
    const auto store = folder / "ocms.db";
    const FailingSharedFile failing(systemError);
    EXPECT_EQ(errorOf([&] { host::DataAccessService{das}; }),
              das.string() + ": unable to open database file" + sentence);
    EXPECT_EQ(errorOf([&] { host::LocalMgmtStore{store}; }),
              store.string() + ": unable to open database file" + sentence);
  }
}
