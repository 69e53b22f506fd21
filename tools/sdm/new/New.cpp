// Options and help; the project is written into a new folder or not at all.
#include "New.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <system_error>
#include <unistd.h>

#include "Skeleton.h"
#include "base/Shown.h"
#include "base/StartError.h"
#include "base/Style.h"
#include "check/Result.h"
#include "map/ItemTable.h"

namespace cli
{
namespace
{

struct NewSettings
{
  std::string name;
  std::filesystem::path map;
  bool despiteErrors = false;
  /// Nothing given: a folder of the service's name.
  std::filesystem::path into;
};

constexpr const char* footer =
    "Writes a complete project: settings with their types guessed from the defaults, a setter and a getter for each\n"
    "name in the map, a validator for its groups, tests, and CMake files that find the installed ServiceDataManager.\n"
    "It builds and passes its tests as it is. A folder that holds anything is left alone.\n\n"
    "Exit codes:\n"
    "  0  done\n"
    "  1  refused: the folder is not empty, or the check of maps finds errors\n"
    "  2  wrong usage of the command line\n"
    "  3  the map cannot be read, or the folder not be written\n";

[[noreturn]] void notWritten(const std::filesystem::path& path, const std::string& why)
{
  throw StartError(path.string() + " cannot be written: " + why);
}

void write(const std::filesystem::path& path, const std::string& text)
{
  std::error_code failed;
  std::filesystem::create_directories(path.parent_path(), failed);
  std::ofstream file(path, std::ios::binary);
  file << text;
  if (failed || !file.flush())
    notWritten(path, failed ? failed.message() : std::strerror(errno));
}

/// The project takes its place at the end, as a whole, so that a failure leaves nothing behind.
class Draft
{
public:
  explicit Draft(const std::filesystem::path& target) : final(target)
  {
    std::error_code failed;
    std::filesystem::create_directories(final.parent_path(), failed);
    if (failed)
      notWritten(final, failed.message());
    std::string pattern = final.string() + ".XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr)
      notWritten(final, std::strerror(errno));
    folder = pattern;
    // As any folder, not as one of the kind that is nobody else's business.
    std::filesystem::permissions(folder, std::filesystem::perms(0755));
  }
  ~Draft()
  {
    std::error_code kept;
    if (!folder.empty())
      std::filesystem::remove_all(folder, kept);
  }
  Draft(const Draft&) = delete;
  Draft& operator=(const Draft&) = delete;

  void add(const std::string& path, const std::string& text) const
  {
    write(folder / path, text);
  }

  /// Takes the place of an empty folder, too.
  void finish()
  {
    std::error_code failed;
    std::filesystem::rename(folder, final, failed);
    if (failed)
      notWritten(final, failed.message());
    folder.clear();
  }

private:
  std::filesystem::path final;
  std::filesystem::path folder;
};

bool isFree(const std::filesystem::path& folder)
{
  return !std::filesystem::exists(std::filesystem::symlink_status(folder)) ||
         (std::filesystem::is_directory(folder) && !std::filesystem::is_symlink(folder) &&
          std::filesystem::is_empty(folder));
}

/// Tells what the rules for maps find. False when an error is among it.
bool passesTheCheck(const std::filesystem::path& path, const std::string& content)
{
  check::Result result;
  result.path = path.string();
  result.map = std::make_unique<MapText>(result.path, content);
  result.findings = check::findingsOf(*result.map, check::allRules());
  const std::size_t errors = result.count(Severity::error);
  if (errors == 0)
  {
    const std::size_t warnings = result.count(Severity::warning);
    if (warnings > 0)
      std::cerr << "sdm: `sdm check` has " << counted(warnings, "warning") << " for " << shown(result.path) << "\n";
    return true;
  }
  constexpr std::size_t most = 10;
  auto& findings = result.findings;
  findings.erase(std::remove_if(findings.begin(), findings.end(),
                                [](const check::Finding& finding)
                                { return finding.rule->severity != Severity::error; }),
                 findings.end());
  findings.resize(std::min(errors, most));
  check::tellText(std::cerr, result, Style(wantsColours(STDERR_FILENO)), false);
  if (errors > most)
    std::cerr << "sdm: and " << counted(errors - most, "more error") << "\n";
  return false;
}

ExitCode makeNew(const NewSettings& settings)
{
  const std::string map = mapContent(settings.map);
  if (!passesTheCheck(settings.map, map) && !settings.despiteErrors)
    return exitRefused;
  const ItemTable table(settings.map);
  std::filesystem::path folder = settings.into.empty() ? std::filesystem::path(settings.name) : settings.into;
  folder = std::filesystem::absolute(folder / "").lexically_normal().parent_path();
  if (!isFree(folder))
  {
    std::cerr << "sdm: " << shown(folder.string()) << " is there and not empty; name another folder with --into\n";
    return exitRefused;
  }
  Draft draft(folder);
  const auto files = skeleton::filesOf(settings.name, table);
  for (const auto& [path, text] : files)
    draft.add(path, text);
  draft.add(settings.name + ".csv", map);
  draft.finish();
  std::cout << "made " << shown(folder.string()) << ": " << counted(files.size() + 1, "file") << " for "
            << counted(table.rootIds().size(), "item") << "\n"
            << "  cd " << shownValue(folder.string()) << "\n"
            << "  cmake -S . -B build -G Ninja && cmake --build build && ctest --test-dir build\n"
            << "  sdm run --service build/" << settings.name << ".so\n";
  return exitDone;
}

} // namespace

Action addNew(CLI::App& app)
{
  const auto settings = std::make_shared<NewSettings>();
  app.add_option("NAME", settings->name, "What the service is called: letters, digits, - and _")
      ->required()
      ->type_name("")
      ->check(
          [](const std::string& name) {
            return skeleton::isServiceName(name) ? ""
                                                 : "a service's name has a letter first, then letters, digits, - and _";
          });
  app.add_option("--map", settings->map, "Item map file that the service is made for")->type_name("FILE")->required();
  app.add_flag("--despite-errors", settings->despiteErrors,
               "Write the project although the check of maps finds errors, which are told");
  app.add_option("--into", settings->into, "Folder of the project, made when it is not there; without it NAME")
      ->type_name("DIR");
  app.footer(footer);
  return [settings] { return makeNew(*settings); };
}

} // namespace cli
