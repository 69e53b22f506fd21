// Item maps that come as a dictionary of the local management store: through the host's own store into the manager. An
// input has a line for each entry of the dictionary: key, tab, value.
#include <map>
#include <memory>

#include "Fuzz.h"
#include "ServiceDataManagerTestAccess.h"
#include "Tokens.h"
#include "host/LocalMgmtStore.h"
#include "host/RuntimeContext.h"

namespace
{

using Entries = std::vector<std::pair<std::string, std::string>>;

const fuzz::Grammar& grammar()
{
  static const fuzz::Grammar rules = {
      {"input", {"{item}", "{item}{input}"}},
      {"item",
       {"{begin}{number}]/rootId\t{value}\n", "{begin}{number}]/rootId\tid\n{entry}{entry}{entry}",
        "{begin}1]/rootId\ta\n{begin}2]/rootId\tb\n{begin}3]/rootId\tc\n"}},
      {"entry", {"{begin}{number}]/{field}\t{value}\n", "{begin}{number}]{field}\t{value}\n", "{value}\n"}},
      {"begin", {"/item[", "/item[0", "item["}},
      {"number", {"1", "2", "3", "4", "10"}},
      {"field",
       {"rootId", "dasSchema", "dasItem", "dasIndexName", "dasIndexValue", "setter", "getter", "default", "userData",
        "isGroupItem", "dasEncrypted"}},
      {"value", {"", "a", "known", "true", "\xC3\xA4", "\xFF", std::string("a\0b", 3), "{value} {value}"}},
  };
  return rules;
}

Entries entriesOf(const std::string& input)
{
  Entries entries;
  for (const std::string& line : fuzz::parts(input, '\n'))
  {
    const std::size_t tab = line.find('\t');
    entries.emplace_back(line.substr(0, tab), tab == std::string::npos ? "" : line.substr(tab + 1));
  }
  return entries;
}

/// Items and user data as the dictionary has them, a line each.
std::string expectedItems(const Entries& entries)
{
  std::map<std::string, std::string> values;
  for (const auto& [key, value] : entries)
    values[key] = value;
  std::string items;
  std::string userData;
  for (int number = 1;; ++number)
  {
    const std::string prefix = "/item[" + std::to_string(number) + "]/";
    const std::string rootId = values[prefix + "rootId"];
    if (rootId.empty())
      return items + "user data:\n" + userData;
    items += rootId;
    for (const char* field : {"dasSchema", "dasItem", "dasIndexName", "dasIndexValue", "default"})
      items += "|" + values[prefix + field];
    items += values[prefix + "setter"] == "known" ? "|set" : "|";
    items += values[prefix + "getter"] == "known" ? "|get" : "|";
    items += "|" + values[prefix + "isGroupItem"] + "|" + values[prefix + "dasEncrypted"] + "\n";
    userData += values[prefix + "userData"].empty() ? "" : rootId + "\n";
  }
}

std::string loadedItems(const ServiceDataManagerTestAccess& access)
{
  std::string items;
  for (const ManagedDataItem* item : access.items)
    items += item->rootId + "|" + item->dasSchema + "|" + item->dasItem + "|" + item->dasIndexName + "|" +
             item->dasIndexValue + "|" + item->defaultValue + (item->setter != nullptr ? "|set" : "|") +
             (item->getter != nullptr ? "|get" : "|") + "|" + item->isGroupItem + "|" + item->dasEncrypted + "\n";
  return items + "user data:\n" + fuzz::lines(access.userDataIds);
}

class Callback : public ManagedItemSetter, public ManagedItemGetter
{
public:
  bool setValue(const std::string&, const std::string&, std::string&) override
  {
    return true;
  }
  std::string getValue(const std::string&) override
  {
    return "";
  }
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  static host::LocalMgmtStore store(":memory:");
  const Entries entries = entriesOf(fuzz::textOf(data, size));
  store.defineDictionary("map", entries);

  host::RuntimeContext context;
  context.offer("LocalMgmtIfc", &store);
  ServiceDataManager manager;
  manager.setup(&context, nullptr, "fuzzed", nullptr);
  manager.addSetter({"known", new Callback});
  manager.addGetter({"known", new Callback});
  ServiceDataManagerTestAccess access(manager);
  access.setAllManagedData("map");
  fuzz::requireEqual(loadedItems(access), expectedItems(entries), "the manager has the items of the dictionary");
  manager.deleteSetters();
  manager.deleteGetters();
  return 0;
}

std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned int seed)
{
  return fuzz::mutate(grammar(), "/[]\t\n", data, size, maxSize, seed);
}
