// Plays lives on the manager and on its model and compares what could be seen of them, step by step. On a difference
// the life is shrunk, and shown with the first line that differs.
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <random>

#include "Classes.h"
#include "Generator.h"
#include "Model.h"
#include "Player.h"
#include "ServiceDataManager/ServiceDataManager.h"

namespace
{

judge::Candidate theModel()
{
  const auto model = std::make_shared<judge::Model>();
  return {model, [model = model.get()](const std::string& name) { return model->isItemManaged(name); }};
}

judge::Candidate theManager()
{
  const auto manager = std::make_shared<ServiceDataManager>();
  return {manager, [manager = manager.get()](const std::string& name) { return manager->isItemManaged(name); }};
}

std::string stepName(const judge::Life& life, std::size_t number)
{
  if (number == 0)
    return "the construction";
  if (number > life.steps.size())
    return "the end";
  return "step " + std::to_string(number) + ", " + judge::nameOf(life.steps[number - 1].what);
}

/// Empty when both traces are the same.
std::string difference(const judge::Life& life, const judge::Trace& expected, const judge::Trace& seen)
{
  for (std::size_t number = 0; number < expected.size(); ++number)
  {
    const auto& right = expected[number];
    const auto& left = seen[number];
    std::size_t line = 0;
    while (line < right.size() && line < left.size() && right[line] == left[line])
      ++line;
    if (line == right.size() && line == left.size())
      continue;
    std::string text = "They differ in " + stepName(life, number) + ", line " + std::to_string(line + 1) + ":\n";
    for (std::size_t before = line < 6 ? 0 : line - 6; before < line; ++before)
      text += "    both     " + right[before] + '\n';
    text += "    model    " + (line < right.size() ? right[line] : "(nothing)") + '\n';
    return text + "    manager  " + (line < left.size() ? left[line] : "(nothing)") + '\n';
  }
  return "";
}

/// A working directory of its own, gone at the end.
class Folder
{
public:
  Folder()
  {
    std::string pattern = (std::filesystem::temp_directory_path() / "sdm-judge-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
      throw std::runtime_error("no temporary directory");
    path = pattern;
    std::filesystem::current_path(path);
  }
  ~Folder()
  {
    std::error_code ignored;
    std::filesystem::current_path("/", ignored);
    std::filesystem::remove_all(path, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

private:
  std::filesystem::path path;
};

bool judged(unsigned long lives, const std::string& seed, const std::string& size)
{
  const char* const given = std::getenv("RC_PARAMS");
  const std::string parameters = "seed=" + seed + " max_success=" + std::to_string(lives) + " max_size=" + size + " " +
                                 (given == nullptr ? "" : given);
  setenv("RC_PARAMS", parameters.c_str(), 1);
  return rc::check("The manager lives as its model does",
                   []
                   {
                     const judge::Life life = *judge::lives();
                     const judge::Trace expected = judge::play(life, theModel);
                     const std::string differs = difference(life, expected, judge::play(life, theManager));
                     judge::classify(life, expected);
                     if (!differs.empty())
                       RC_FAIL(differs);
                   });
}

} // namespace

/// usage: model_judge [LIVES [SEED [SIZE]]]: how many lives, from which seed (a number, or "random"), and of how many
/// steps at most. RC_PARAMS in the environment adds to them, for instance what a failing run told to reproduce it.
int main(int count, char** arguments)
{
  const unsigned long lives = count > 1 ? std::stoul(arguments[1]) : 1000;
  std::string seed = count > 2 ? arguments[2] : "random";
  const std::string size = count > 3 ? arguments[3] : "20";
  if (seed == "random")
    seed = std::to_string(std::random_device{}());
  std::cout << "model_judge " << lives << ' ' << seed << ' ' << size << std::endl;
  const Folder folder;
  const auto begin = std::chrono::steady_clock::now();
  const bool same = judged(lives, seed, size);
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
  std::cout << "seconds " << taken.count() << '\n';
  const bool everywhere = judge::reportClasses(std::cout);
  // Few lives need not have been everywhere.
  return same && (everywhere || lives < 20000) ? 0 : 1;
}
