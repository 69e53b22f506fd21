// The security log in text files of limited size.
#pragma once

#include <SecurityLogServiceIfc.h>

#include <cstddef>
#include <ctime>
#include <filesystem>
#include <mutex>
#include <string>
#include <vector>

#include "host/Error.h"
#include "host/HostExport.h"

namespace host
{
/// One line a record, its fields separated by tabs: time (ISO 8601, UTC), the four codes, "failed" or "ok", record,
/// user, origin; an empty text stands as "-". Control characters, bytes that are no UTF-8 and backslashes are escaped
/// in the manner of C, so a record is always one line and cannot pass for two. A line that a power cut or a failure
/// left unfinished, whose record was never answered as written, is kept and ended by one more field, "\unfinished",
/// which no record has. A file of 5 MiB becomes FILE.1, with up to FILE.4 behind it, and the log goes on in a new one,
/// whose first line says so: it is a record whose codes are 0 and that has one more field, "\continued". It tells how
/// many records were dropped with the oldest files, so far in all, and the time of the last of them. When the log
/// cannot be rotated it goes on in its file, and that is logged. Every operation may be called from any thread.
class SDM_HOST_EXPORT SecurityLogService : public ::SecurityLogServiceIfc
{
public:
  /// Opens the file for appending, made with mode 0600 when it is not there. Throws `Error` naming the file and the
  /// reason.
  explicit SecurityLogService(const std::filesystem::path& file);

  /// For a file that cannot be written, for the reason that `why` gives: throws it for every record. What the file
  /// holds can be read as far as that goes.
  SecurityLogService(const std::filesystem::path& file, const Error& why);
  ~SecurityLogService() override;
  SecurityLogService(const SecurityLogService&) = delete;
  SecurityLogService& operator=(const SecurityLogService&) = delete;

  /// Returns when the record is on the disk; throws `Error` when it could not be written.
  void logSecurityEvent(time_t when, int facility, int severity, int eventType, int eventClass, bool failed,
                        std::string record, std::string user, std::string origin) override;

  /// The last `count` lines, those of older files included, oldest first, without line ends. Throws `Error` when the
  /// file cannot be read.
  std::vector<std::string> lastLines(std::size_t count);

private:
  bool endsInsideLine() const;
  bool isFull(std::size_t more) const;
  void rotate(std::string& line);

  std::filesystem::path file;
  std::string unwritable;
  std::mutex mutex;
  int descriptor;
  /// Up to where a file goes on that could not be rotated.
  std::size_t unrotated = 0;
};
} // namespace host
