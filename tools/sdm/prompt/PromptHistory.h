// Keeps typed lines between runs, in a file of the user.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace cli
{

/// `sdm/history` in the folder that XDG_STATE_HOME names, without it in ~/.local/state; readable by its owner alone.
/// Nothing is kept where neither is known, and none of it ever fails a command.
class PromptHistory
{
public:
  PromptHistory();

  /// The last lines, oldest first.
  std::vector<std::string> lines() const;

  /// Adds a line, on the disk at once. The caller keeps lines with secrets back.
  void add(const std::string& line) const;

private:
  void shorten() const;

  std::filesystem::path file;
};

} // namespace cli
