// Item map files: the reader by itself, and the manager's loading with it, against a plain reading of the same bytes.
// An input is a file; its size chooses the number of the unit's interfaces.
#include "ItemMapFile.h"

#include <algorithm>
#include <fstream>

#include "Fuzz.h"
#include "ServiceDataManagerTestAccess.h"
#include "Services.h"
#include "Tokens.h"
#include "Trace.h"
#include "WorkingFolder.h"

namespace
{

using sdm::ItemMapColumn;
using Columns = std::vector<std::string>;

const fuzz::Grammar& grammar()
{
  static const std::string long100(100, 'x');
  static const fuzz::Grammar rules = {
      {"input", {"{line}\n", "{line}\n{input}", "{line}\r\n{input}", "{line}"}},
      {"line",
       {"{field},{field},{field},{field},{field},{field},{callback},{callback},{field},{field},{field},{flag}",
        "{line},{field}", "{field},{field}", ",,,,,,,,,,,", "short", "{nul}", "# a remark of some length"}},
      {"callback", {"", "known", "unknown"}},
      {"flag", {"", "true", "TRUE", "true\r"}},
      {"nul", {std::string("a\0b", 3), std::string(1, '\0'), std::string("a,b,c,d,e,f,g,h,i,j,k,l\0m", 25)}},
      {"field", {"", "a", "id.one", "S", "1", "\xC3\xA4", "{long}", " "}},
      {"long", {long100, "{long}{long}", long100 + ","}},
  };
  return rules;
}

/// One line as it should be read: its columns, or none for one that lacks some.
struct Reading
{
  std::vector<Columns> lines;
  std::size_t passedOver = 0;
  std::size_t all = 0;
  /// Lines that the log tells of: one for a line that is skipped, and one for all skipped pieces of a longer one.
  std::size_t told = 0;
};

Columns columnsOf(const std::string& line)
{
  Columns columns = fuzz::parts(line, ',');
  if (columns.size() < 12)
    return {};
  columns.resize(12);
  return columns;
}

Reading plainReading(const std::string& file)
{
  Reading reading;
  bool continues = false;
  bool tooLong = false;
  bool toldTooLong = false;
  for (std::size_t place = 0; place < file.size();)
  {
    const std::size_t end = std::min(file.find('\n', place), file.size() - 1) + 1;
    const std::string line = file.substr(place, std::min<std::size_t>(end - place, 500));
    place += line.size();
    ++reading.all;
    std::string text = line.substr(0, line.find('\0'));
    const bool first = !continues;
    continues = text.size() == 500 && text.back() != '\n';
    if (first)
    {
      tooLong = continues && place < file.size() && file[place] != '\n';
      toldTooLong = false;
    }
    if (!text.empty() && text.back() == '\n')
      text.pop_back();
    if (text.size() < 10)
    {
      ++reading.passedOver;
      continue;
    }
    reading.lines.push_back(columnsOf(text));
    if (reading.lines.back().empty() && !(tooLong && std::exchange(toldTooLong, true)))
      ++reading.told;
  }
  return reading;
}

std::string described(const std::vector<Columns>& all)
{
  std::string text;
  for (const Columns& columns : all)
  {
    for (const std::string& column : columns)
      text += column + "|";
    text += "\n";
  }
  return text;
}

void checkReader(const Reading& expected)
{
  sdm::ItemMapFile file("CommsSettings.csv");
  fuzz::require(file.isOpen(), "the file opens");
  std::vector<Columns> lines;
  unsigned long lastLine = 0;
  for (auto line = file.next(); line != sdm::ItemMapFile::Line::end; line = file.next())
  {
    fuzz::require(line != sdm::ItemMapFile::Line::readError, "the file can be read");
    fuzz::require(file.lineNumber() >= lastLine && file.lineNumber() > 0, "line numbers go up");
    lastLine = file.lineNumber();
    Columns& columns = lines.emplace_back();
    for (std::size_t i = 0; line == sdm::ItemMapFile::Line::item && i < 12; ++i)
      columns.emplace_back(file.column(static_cast<ItemMapColumn>(i)));
  }
  fuzz::requireEqual(described(lines), described(expected.lines), "each line is an item or lacks columns");
  fuzz::require(lines.size() + expected.passedOver == expected.all, "lines read and passed over are all there are");
}

/// The map's lines as the manager's items should come out: without user data and the alternative default.
void checkManager(const Reading& expected, std::uint32_t interfaceCount)
{
  recording::Context context;
  recording::Interfaces interfaces;
  interfaces.count = interfaceCount;
  context.services = {{"PhysicalInterfaceServiceIfc", &interfaces}};
  ServiceDataManager manager;
  manager.setup(&context, nullptr, "fuzzed", nullptr);
  manager.addSetter({"known", new recording::Setter("known")});
  manager.addGetter({"known", new recording::Getter("known")});
  ServiceDataManagerTestAccess access(manager);
  access.setAllManagedData("CommsItemMap");

  std::vector<Columns> wanted;
  std::vector<std::string> userData;
  for (const Columns& line : expected.lines)
  {
    if (line.empty())
      continue;
    const bool alternative = interfaceCount >= 2 && interfaceCount <= 4 && !line[10].empty();
    wanted.push_back({line[0], line[1], line[2], line[3], line[4], line[alternative ? 10 : 5],
                      line[6] == "known" ? "set" : "", line[7] == "known" ? "get" : "", line[9], line[11]});
    if (!line[8].empty())
      userData.push_back(line[0]);
  }
  std::vector<Columns> loaded;
  for (const ManagedDataItem* item : access.items)
    loaded.push_back({item->rootId, item->dasSchema, item->dasItem, item->dasIndexName, item->dasIndexValue,
                      item->defaultValue, item->setter != nullptr ? "set" : "", item->getter != nullptr ? "get" : "",
                      item->isGroupItem, item->dasEncrypted});
  fuzz::requireEqual(described(loaded), described(wanted), "the manager has an item for each line that is one");
  fuzz::requireEqual(fuzz::lines(access.userDataIds), fuzz::lines(userData), "marked items are user data");
  fuzz::require(recording::traceOf("log 2 setAllManagedData line").size() == expected.told, "skipped lines are told");
  manager.deleteSetters();
  manager.deleteGetters();
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  static const fuzz::WorkingFolder folder;
  recording::reset();
  const std::string content = fuzz::textOf(data, size);
  std::ofstream("CommsSettings.csv", std::ios::binary) << content;
  const Reading expected = plainReading(content);
  checkReader(expected);
  checkManager(expected, static_cast<std::uint32_t>(size % 6));
  return 0;
}

std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned int seed)
{
  return fuzz::mutate(grammar(), ",\n", data, size, maxSize, seed);
}
