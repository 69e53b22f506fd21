#include "New.h"

#include <CLI/CLI.hpp>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <system_error>

#include "Skeleton.h"
#include "base/Shown.h"
#include "base/StartError.h"
#include "map/ItemTable.h"
#include "map/MapFitness.h"

namespace cli
{
namespace
{

struct NewSettings
{
  std::string name;
  std::filesystem::path map;
  /// Nothing given: a folder of the service's name.
  std::filesystem::path into;
};

constexpr const char* footer =
    "Writes a complete project: settings with their types guessed from the defaults, a setter and a getter for each\n"
    "name in the map, a validator for its groups, tests, and CMake files that find the installed ServiceDataManager.\n"
    "It builds and passes its tests as it is. A folder that holds anything is left alone.\n\n"
    "Exit codes:\n"
    "  0  done\n"
    "  1  refused: the folder is not empty, or lines of the map would be cut, skipped or not encrypted\n"
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

ExitCode refuseMap(const std::filesystem::path& map, const std::vector<std::string>& problems)
{
  constexpr std::size_t most = 10;
  for (std::size_t i = 0; i < problems.size() && i < most; ++i)
    std::cerr << "sdm: the item map " << shown(map.string()) << ", " << problems[i] << "\n";
  if (problems.size() > most)
    std::cerr << "sdm: and " << problems.size() - most << " more lines like these\n";
  return exitRefused;
}

ExitCode makeNew(const NewSettings& settings)
{
  const std::string map = mapContent(settings.map);
  const auto problems = unfitLines(map);
  if (!problems.empty())
    return refuseMap(settings.map, problems);
  const ItemTable table(settings.map);
  std::filesystem::path folder = settings.into.empty() ? std::filesystem::path(settings.name) : settings.into;
  folder = std::filesystem::absolute(folder / "").lexically_normal().parent_path();
  if (!isFree(folder))
  {
    std::cerr << "sdm: " << shown(folder.string()) << " is there and not empty; name another folder with --into\n";
    return exitRefused;
  }
  Draft draft(folder);
  const auto files = skeleton(settings.name, table);
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
          [](const std::string& name)
          { return isServiceName(name) ? "" : "a service's name has a letter first, then letters, digits, - and _"; });
  app.add_option("--map", settings->map, "Item map file that the service is made for")->type_name("FILE")->required();
  app.add_option("--into", settings->into, "Folder of the project, made when it is not there; without it NAME")
      ->type_name("DIR");
  app.footer(footer);
  return [settings] { return makeNew(*settings); };
}

} // namespace cli
