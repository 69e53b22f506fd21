// Subcommands that are programs of their own, since they need libraries that `sdm` itself does without.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace cli
{

/// The folder of the program that runs, with links followed. Empty when the system does not tell.
std::filesystem::path ownFolder();

/// The names NAME of all programs sdm-NAME in the folder of this one, sorted. No other folder is searched, so that
/// nobody's search path decides what a subcommand is.
std::vector<std::string> programsBeside();

/// Becomes the program sdm-NAME of that folder, which gets the arguments after the first two: those of
/// `sdm NAME ARGUMENT...`. Throws `StartError` when it cannot.
[[noreturn]] void becomeProgramBeside(const std::string& name, const char* const* argv);

} // namespace cli
