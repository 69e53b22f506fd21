// SQLite tells each extension that is to be loaded by itself which database was opened. This one only takes a note.
#include "SqliteHandle.h"

#include <sqlite3.h>

#include <mutex>
#include <utility>

#include "Everlasting.h"

namespace host
{
namespace
{
using Extension = void (*)();

/// Where this thread notes what it opens; null when nobody asks.
thread_local sqlite3** noted = nullptr;

extern "C" int noteHandle(sqlite3* opened, const char**, const struct sqlite3_api_routines*)
{
  if (noted != nullptr)
    *noted = opened;
  return SQLITE_OK;
}

/// Known to SQLite only as long as somebody asks, so that databases of others meet it as seldom as can be.
class Registration
{
public:
  explicit Registration(sqlite3** place) : before(std::exchange(noted, place))
  {
    const std::lock_guard<std::mutex> lock(users().mutex);
    if (users().count++ == 0)
      sqlite3_auto_extension(extension());
  }
  ~Registration()
  {
    noted = before;
    const std::lock_guard<std::mutex> lock(users().mutex);
    if (--users().count == 0)
      sqlite3_cancel_auto_extension(extension());
  }
  Registration(const Registration&) = delete;
  Registration& operator=(const Registration&) = delete;

private:
  struct Users
  {
    std::mutex mutex;
    int count = 0;
  };

  static Users& users()
  {
    static const Everlasting<Users> state;
    return *state;
  }
  /// As SQLite wants it handed in.
  static Extension extension()
  {
    return reinterpret_cast<Extension>(&noteHandle);
  }

  sqlite3** const before;
};
} // namespace

sqlite3* handleOpenedBy(const std::function<void()>& action)
{
  sqlite3* handle = nullptr;
  const Registration registration(&handle);
  action();
  return handle;
}
} // namespace host
