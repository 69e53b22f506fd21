// Replies of the database, through a whole life of a manager: two starts, reads of cells, a set request, an import of
// one item. An input is a list of replies; when they run out the last one comes again.
#include <array>

#include <DasCrypt.h>
#include <ManageableData.h>

#include "Fuzz.h"
#include "ReplyModel.h"
#include "ServiceDataManagerTestAccess.h"
#include "Services.h"
#include "Tokens.h"
#include "Trace.h"

namespace
{

using fuzz::ModelItem;
using fuzz::ReplyModel;

const std::vector<ModelItem>& items()
{
  static const std::vector<ModelItem> all = {
      {"s.c1", "S", "C", "1", "c", true, true, false},     {"s.c2", "S", "C", "2", "live", true, false, false},
      {"s.d1", "S", "D", "1", "live", true, true, false},  {"s.e1", "S", "E", "1", "e", true, false, true},
      {"s.e2", "S", "E", "2", "e", true, true, true},      {"t.c", "T", "C", "", "c", true, true, false},
      {"t.e", "T", "E", "", "e", true, true, true},        {"t.plain", "T", "P", "", "p", false, false, false},
      {"t.sealed", "T", "Q", "", "q", false, false, true},
  };
  return all;
}

const fuzz::Grammar& grammar()
{
  static const fuzz::Grammar rules = {
      {"input", {"{reply}", "{reply}\x1e{input}"}},
      {"reply", {"{head}<Schema name=\"{schema}\">{kind}{cells}</Schema>"}},
      {"head", {"", R"(<?xml version="1.0" encoding="utf-8"?>)", "\xEF\xBB\xBF"}},
      {"schema", {"S", "T", "U", "S&#83;", ""}},
      {"attribute", {" name=\"{schema}\"", " version='1'", " Name=\"S\""}},
      {"kind",
       {"<ReasonForMessage>read_response</ReasonForMessage>", "<ReasonForMessage>update_response</ReasonForMessage>",
        "<ReasonForMessage>error_response</ReasonForMessage>", "<ReasonForMessage/>", ""}},
      {"cells", {"", "{cell}", "<Entry><Idx>{row}</Idx>{cell}{cells}</Entry>{cells}", "{cell}{cells}", "{text}{cell}"}},
      {"row", {"1", "2", "3", ""}},
      {"column", {"C", "D", "E", "P", "Q", "Idx"}},
      {"cell",
       {"<C>{text}</C>", "<D>{text}</D>", "<E>{sealed}</E>", "<P>{text}</P>", "<Q>{sealed}</Q>", "<E/>", "<C/>",
        "<C>{text}{cell}{text}</C>", "<Context>{cell}</Context>", "<Schema{attribute}>{cell}</Schema>",
        "<Idx>{row}</Idx>"}},
      {"sealed", {"c0de6c6c", "c0de6b==", "c0de", "{text}"}},
      {"text",
       {"", "live", "v", "a&amp;b", "&#x41;&lt;", "<![CDATA[<x>&]]>", "<!-- no -->", "<?do it?>", "\r\n", "\t ",
        "\xC3\xA4", "\xFF", "&none;", "]]>"}},
  };
  return rules;
}

/// One manager on the recording platform, with callbacks that accept everything.
class Life
{
public:
  explicit Life(const std::string& input)
      : replies(fuzz::parts(input, fuzz::nextMessage)), model(items(), {{"S", "Idx"}}, "live")
  {
    recording::behaviour().openLevel = 3;
    context.services = {{"DataAccessServiceIfc", &das}, {"LocalMgmtIfc", &store}};
    das.fallback = [this](const std::string&) { return replies[std::min(next++, replies.size() - 1)]; };
    defineItems();
    manager.setup(&context, nullptr, "fuzzed", &validator);
  }

  ~Life()
  {
    manager.deleteSetters();
    manager.deleteGetters();
  }

  void run()
  {
    start(ReplyModel::Mode::firstStart);
    manager.setStartup(false);
    start(ReplyModel::Mode::laterStart);
    readCell("t.plain");
    readCell("t.sealed");
    set();
    collect();
  }

private:
  void defineItems()
  {
    int number = 0;
    for (const ModelItem& item : items())
    {
      const std::string prefix = "/item[" + std::to_string(++number) + "]/";
      auto& dictionary = store.dictionaries["map"];
      dictionary[prefix + "rootId"] = item.rootId;
      dictionary[prefix + "dasSchema"] = item.schema;
      dictionary[prefix + "dasItem"] = item.column;
      dictionary[prefix + "dasIndexName"] = item.schema == "S" ? "Idx" : "";
      dictionary[prefix + "dasIndexValue"] = item.row;
      dictionary[prefix + "default"] = item.defaultValue;
      dictionary[prefix + "setter"] = dictionary[prefix + "getter"] = item.rootId;
      dictionary[prefix + "dasEncrypted"] = item.encrypted ? "true" : "";
      if (item.setter)
        manager.addSetter({item.rootId.c_str(), new recording::Setter(item.rootId)});
      if (!item.getter)
        continue;
      auto* getter = new recording::Getter(item.rootId);
      getter->value = "live";
      manager.addGetter({item.rootId.c_str(), getter});
    }
  }

  const std::string& upcoming(std::size_t ahead) const
  {
    return replies[std::min(next + ahead, replies.size() - 1)];
  }

  /// What the manager did since the trace was emptied: from the first request on, and only what the model tells.
  static std::string done()
  {
    static const std::array<std::string, 5> told = {"set ", "get ", "fromEncryptedText(", "log 2 parser error",
                                                    "log 2 decryptData failed"};
    bool asked = false;
    std::vector<std::string> entries;
    for (const std::string& entry : recording::trace())
    {
      asked = asked || entry.rfind("sendRequest(", 0) == 0;
      for (const std::string& beginning : told)
        if (asked && entry.rfind(beginning, 0) == 0)
          entries.push_back(beginning.rfind("log", 0) == 0 ? beginning : entry);
    }
    recording::trace().clear();
    return fuzz::lines(entries);
  }

  std::string expected()
  {
    const std::string all = fuzz::lines(model.trace);
    model.trace.clear();
    recording::trace().clear();
    return all;
  }

  void start(ReplyModel::Mode mode)
  {
    const std::string first = upcoming(0);
    const std::string second = upcoming(1);
    recording::trace().clear();
    // A later start publishes what changed, too: the import alone tells all there is to see here.
    if (mode == ReplyModel::Mode::firstStart)
      manager.initialise("map");
    else
      ServiceDataManagerTestAccess(manager).importFromDAS();
    const std::size_t refusals = recording::traceOf("log 3 importFromDAS bad XML reply").size();
    const std::string did = done();
    const std::size_t accepted = (model.read(first, mode) ? 1U : 0U) + (model.read(second, mode) ? 1U : 0U);
    fuzz::requireEqual(did, expected(), "an import applies what the replies say");
    fuzz::requireEqual(std::to_string(2 - refusals), std::to_string(accepted), "so many replies are accepted");
  }

  void readCell(const std::string& rootId)
  {
    const std::string reply = upcoming(0);
    recording::trace().clear();
    ManageableData data;
    data.addRootId(rootId, nullptr);
    fuzz::require(manager.getData(data), "a read is answered");
    const std::string did = done();
    std::string value;
    data.interogate(rootId, rootId, value);
    const ModelItem& item = items()[rootId == "t.plain" ? 7 : 8];
    const std::string wanted = model.read(reply, ReplyModel::Mode::collect) ? model.value(item) : item.defaultValue;
    fuzz::requireEqual(value, wanted, "a read answers the last text of the reply, or the default");
    fuzz::requireEqual(did, expected(), "a read does nothing else");
  }

  void set()
  {
    const std::string reply = upcoming(0);
    ManageableData data;
    data.populate("t.c", "t.c", "new");
    const bool done = manager.setData(data);
    fuzz::require(done == model.read(reply, ReplyModel::Mode::collect), "a set is done when its reply is accepted",
                  reply);
    expected();
  }

  /// Nobody outside sees all of the collected values, so this is a look inside.
  void collect()
  {
    const std::string reply = upcoming(0);
    std::string values = "untouched";
    const bool accepted = ServiceDataManagerTestAccess(manager).parseXMLDasReply(reply, false, &values);
    fuzz::require(accepted == model.read(reply, ReplyModel::Mode::collect), "the reply is judged by its kind", reply);
    fuzz::requireEqual(values, accepted ? model.collected : "untouched", "an accepted reply's columns are collected");
  }

  std::vector<std::string> replies;
  std::size_t next = 0;
  ReplyModel model;
  recording::Context context;
  recording::Das das;
  recording::Store store;
  recording::Validator validator;
  ServiceDataManager manager;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  recording::reset();
  Life(fuzz::textOf(data, size)).run();
  return 0;
}

std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned int seed)
{
  return fuzz::mutate(grammar(), fuzz::xmlDelimiters, data, size, maxSize, seed);
}
