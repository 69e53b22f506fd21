// Commands that read items.
#include <algorithm>
#include <nlohmann/json.hpp>

#include "CommandFunctions.h"
#include "base/JsonText.h"
#include "base/Shown.h"
#include "history/Explanation.h"

namespace cli
{
namespace
{

void field(Session& session, const std::string& name, const std::string& value)
{
  session.out << "  " << padded(name, 13) << value << "\n";
}

std::string place(const MapItem& item)
{
  if (item.isLocal())
    return "the local store";
  const std::string row = item.indexName.empty() ? "" : ", row " + shown(item.indexName) + " " + shown(item.indexValue);
  return "the database, schema " + shown(item.schema) + ", column " + shown(item.column) + row;
}

std::string members(Session& session, const std::string& group)
{
  std::string list;
  for (const MapItem& item : session.running.items().items())
  {
    if (item.group == group)
      list += (list.empty() ? "" : ", ") + shown(item.rootId);
  }
  return shown(group) + ": " + list;
}

std::string callback(const std::string& name, bool known)
{
  if (name.empty())
    return "none";
  return shown(name) + (known ? "" : " (unknown to the service)");
}

std::string kinds(Session& session, const MapItem& item)
{
  const auto locked = session.running.device().store().lockedItems();
  std::string list;
  const auto add = [&](bool holds, const char* text)
  { list += holds ? std::string(list.empty() ? "" : ", ") + text : ""; };
  add(item.encrypted, "encrypted");
  add(item.userData, "user data");
  add(item.isLocal(), "on the device only");
  add(std::find(locked.begin(), locked.end(), item.rootId) != locked.end(), "locked");
  return list.empty() ? "plain" : list;
}

} // namespace

void writeJson(Session& session, const nlohmann::ordered_json& document)
{
  session.out << shownJson(jsonText(document, 2)) << "\n";
}

bool takeJsonWord(Arguments& arguments)
{
  const bool taken = !arguments.empty() && arguments.front() == jsonWord;
  if (taken)
    arguments.erase(arguments.begin());
  return taken;
}

Outcome showItem(Session& session, const Arguments& arguments)
{
  const MapItem* item = session.known(arguments.front());
  if (item == nullptr)
    return Outcome::refused;
  const auto values = session.values({item});
  const auto found = values.find(item->rootId);
  const std::string value = found == values.end() ? "" : found->second;
  const Masking& masking = session.running.masking();
  session.out << session.style.strong(shown(item->rootId)) << "\n";
  field(session, "value", masking.value(*item, value));
  field(session, "from", session.origin(*item));
  field(session, "default", masking.value(*item, item->defaultValue));
  if (item->hasAlternative())
    field(session, "alternative",
          masking.value(*item, item->alternativeDefault) +
              (session.running.usesAlternative(*item) ? " (applies)" : ""));
  field(session, "kept in", place(*item));
  field(session, "kind", kinds(session, *item));
  if (!item->group.empty())
    field(session, "group", members(session, item->group));
  field(session, "setter", callback(item->setter, session.running.hasSetter(*item)));
  field(session, "getter", callback(item->getter, session.running.hasGetter(*item)));
  if (session.running.isUndecryptable(*item))
    field(session, "note",
          session.style.notable("the value in the database cannot be decrypted; is das.key the one of this database?"));
  if (session.differsFromDatabase(*item, value))
    field(session, "note", session.style.notable(session.whyItDiffers(*item)));
  return Outcome::done;
}

Outcome explainItem(Session& session, const Arguments& words)
{
  Arguments arguments = words;
  const bool asJson = takeJsonWord(arguments);
  if (arguments.size() != 1)
    return session.refuse("usage: explain [--json] ID");
  const MapItem* item = session.known(arguments.front());
  if (item == nullptr)
    return Outcome::refused;
  const History& history = session.running.history();
  if (asJson)
  {
    printExplanationAsJson(session.out, item->rootId, history.of(item->rootId), session.givenBy(*item));
    return Outcome::done;
  }
  printExplanation(session.out, session.style, item->rootId, history.of(item->rootId), session.givenBy(*item));
  if (!session.running.hasSetter(*item))
    session.out << "  the service has no setter for it, so nobody gives it a value\n";
  if (!history.problem().empty())
    session.remarks << "  " << session.remarkStyle.bad("attention")
                    << " of this run nothing is kept: " << shown(history.problem()) << "\n";
  return Outcome::done;
}

Outcome getItems(Session& session, const Arguments& words)
{
  Arguments arguments = words;
  const bool asJson = takeJsonWord(arguments);
  nlohmann::ordered_json told = nlohmann::ordered_json::object();
  Outcome outcome = Outcome::done;
  std::vector<const MapItem*> items;
  const Masking& masking = session.running.masking();
  const bool withSecret = std::any_of(arguments.begin(), arguments.end(),
                                      [&](const std::string& rootId) { return masking.isSecret(rootId); });
  for (std::size_t i = 0; i < arguments.size(); ++i)
  {
    const std::string& rootId = arguments[i];
    // Whoever types `get` for `set` has the secret itself where a root id belongs.
    if (withSecret && session.running.items().find(rootId) == nullptr)
      outcome = session.refuse("item " + std::to_string(i + 1) + " of " + std::to_string(arguments.size()) +
                               " is none; beside a secret its name is not shown");
    else if (const MapItem* item = session.known(rootId))
      items.push_back(item);
    else
      outcome = Outcome::refused;
  }
  const auto values = session.values(items, true);
  for (const MapItem* item : items)
  {
    const auto found = values.find(item->rootId);
    if (found == values.end())
      outcome = session.refuse("nothing answers for " + shown(item->rootId));
    else if (asJson)
      told[item->rootId] = masking.isSecret(*item) ? std::string(Masking::mask) : found->second;
    else
      session.out << shown(item->rootId) << " = " << masking.value(*item, found->second) << "\n";
  }
  if (asJson)
    writeJson(session, told);
  return outcome;
}

Outcome importItem(Session& session, const Arguments& arguments)
{
  const MapItem* item = session.known(arguments.front());
  if (item == nullptr)
    return Outcome::refused;
  if (item->isLocal())
    return session.refuse(shown(item->rootId) + " is not in the database; `get` reads it");
  std::string value;
  session.running.service().manager().importItemFromDAS(item->rootId, value);
  const PlatformReport report = session.running.takeOutcomes();
  if (report.noDatabase)
    return session.refuse(shown(item->rootId) + " could not be read: the database was not found");
  if (const auto failures = report.failed(false); !failures.empty())
    return session.refuse(shown(item->rootId) + " could not be read: " + failures.front().reason);
  if (value.empty())
  {
    session.out << shown(item->rootId) << ": the database holds nothing, or an empty text\n";
    return Outcome::done;
  }
  const std::string text = item->encrypted ? std::string(Masking::mask) + " (stored encrypted)"
                                           : session.running.masking().value(*item, value);
  session.out << shown(item->rootId) << " is stored as " << text
              << (item->indexName.empty() ? "" : " in the first row of its schema") << "\n";
  return Outcome::done;
}

} // namespace cli
