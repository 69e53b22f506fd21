// A file as git has it in one of its commits.
#pragma once

#include <string>

namespace cli::diff
{

/// The content of the file in that commit, which may be named as git takes it: a branch, a tag, HEAD~1. Runs git in the
/// file's folder. Throws `FileError` when there is no git, no repository, no such commit or no such file in it,
/// and for more than 64 MiB.
std::string contentAt(const std::string& revision, const std::string& path);

} // namespace cli::diff
