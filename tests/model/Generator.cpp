// The vocabulary is small and its words are picked again and again, so that items, requests and replies meet. What
// comes first in a list is what shrinking prefers.
#include "Generator.h"

namespace judge
{

namespace
{

using namespace std::string_literals;
using Texts = std::vector<std::string>;

const Texts rootIds = {"a", "b",      "c",  "g1", "port-3", "a",      "b",     "c",     "g1", "a", "b",    "c",
                       "d", "port-3", "g1", "g2", "ab",     "secret", "port-", "a-1-2", "3",  "",  "x\xff"};
const Texts schemas = {"S",       "",           "Snmp",          "T",        "S", "", "Snmp", "T",
                       "SipBase", "SipFeature", "SipPermission", "Transport"};
const Texts columns = {"A", "B", "C", "D", "E", "A", "B", "CallForwardingAllowed", "", "Sch"};
const Texts indexNames = {"", "", "", "I", "I", "J"};
const Texts indexValues = {"", "1", "2", "10"};
const Texts values = {"",         "1",      "2",           "<&\"'>",      "NOT_CHANGED",         "plain text", "a\nb\r",
                      "\xff\xfe", "c0dezz", "nul\0in it"s, "caf\xc3\xa9", std::string(700, 'v'), "%s %d"};
const Texts callbacks = {"k", "l", "m", "k", "l", "m", "", "n", "k2"};
const Texts marks = {"", "u"};
const Texts groups = {"", "", "g", "g", "h", " "};
const Texts flags = {"", "", "true", "true", "True", "1"};
const Texts mapNames = {"CommsItemMap", "CommsItemMap", "other", "nobody", ""};
const Texts prefixes = {"", "a", "port-3 and more", "g", "port"};
const Texts remarks = {"",
                       "refused",
                       "NOT_CHANGED",
                       "UNCHANGED_DATA",
                       "NOT_CHANGED as before",
                       "UNCHANGED_DATA as before",
                       "said NOT_CHANGED",
                       "said UNCHANGED_DATA",
                       "NOT_CHANGE",
                       "\xff%s"};
const Texts cellTexts = {"1",
                         "",
                         "2",
                         "!1",
                         "!secret <text>",
                         "!",
                         "x&lt;y&amp;z",
                         "<![CDATA[a<b]]>",
                         "a<!-- remark -->b",
                         "line\nend",
                         "caf\xc3\xa9",
                         "&#233;",
                         "c0dezz",
                         "not base64",
                         "&undefined;",
                         "\xff",
                         "<deep>7</deep>",
                         "1<deep/>2",
                         "nul\0in it"s};
const Texts kinds = {"@",
                     "@",
                     "@",
                     "@",
                     "@",
                     "read_response",
                     "update_response",
                     "-",
                     "READ_RESPONSE",
                     "",
                     "error",
                     "<b/>read_response"};
const Texts extras = {"", "", "", "Context", "nested", "extra"};

rc::Gen<unsigned> upTo(unsigned most)
{
  return rc::gen::resize(rc::kNominalSize, rc::gen::inRange(0U, most + 1));
}

template <typename Value>
Value oneOf(const std::vector<Value>& list)
{
  return list[*upTo(static_cast<unsigned>(list.size()) - 1)];
}

/// True once in `times`.
bool rarely(unsigned times)
{
  return *upTo(times - 1) == times - 1;
}

template <typename Value>
std::vector<Value> severalOf(int most, const rc::Gen<Value>& gen)
{
  return *rc::gen::resize(most, rc::gen::container<std::vector<Value>>(gen));
}

rc::Gen<std::string> textOf(const Texts& list)
{
  return rc::gen::map(upTo(static_cast<unsigned>(list.size()) - 1), [&list](unsigned at) { return list[at]; });
}

rc::Gen<MapLine> mapLine()
{
  return rc::gen::exec(
      []
      {
        MapLine line;
        const std::string indexName = oneOf(indexNames);
        const std::string callback = oneOf(callbacks);
        line.columns = {oneOf(rootIds),
                        oneOf(schemas),
                        oneOf(columns),
                        indexName,
                        indexName.empty() && !rarely(8) ? "" : oneOf(indexValues),
                        oneOf(values),
                        callback,
                        rarely(3) ? oneOf(callbacks) : callback,
                        oneOf(marks),
                        oneOf(groups),
                        rarely(4) ? oneOf(values) : "",
                        oneOf(flags)};
        for (std::string& column : line.columns)
        {
          if (column.find_first_of(",\n\0"s) != std::string::npos)
            column = "other";
        }
        if (rarely(10))
          line.shape = static_cast<LineShape>(*upTo(static_cast<unsigned>(LineShape::nulByte)));
        return line;
      });
}

rc::Gen<Reply> reply()
{
  return rc::gen::exec(
      []
      {
        Reply made;
        made.kind = oneOf(kinds);
        made.schema = rarely(6) ? oneOf<std::string>({"-", "T", "S", "unknown"}) : "@";
        made.items = rarely(3) ? *upTo(255) : ~0U;
        made.cells = severalOf(6, textOf(cellTexts));
        made.indexLast = rarely(6);
        made.kindLast = rarely(6);
        made.extra = oneOf(extras);
        if (rarely(4))
          made.damage = static_cast<Damage>(*upTo(static_cast<unsigned>(Damage::columnEverywhere)));
        made.cutAt = *upTo(99);
        return made;
      });
}

rc::Gen<Answer> answer()
{
  return rc::gen::exec([] { return Answer{!rarely(4), rarely(2) ? oneOf(remarks) : ""}; });
}

std::vector<std::pair<std::string, std::string>> requested()
{
  return severalOf(8, rc::gen::pair(textOf(rootIds), textOf(values)));
}

const std::vector<Do> operations = {Do::setData,
                                    Do::getData,
                                    Do::initialise,
                                    Do::setDefaultUserData,
                                    Do::reloadUserData,
                                    Do::setData,
                                    Do::initialise,
                                    Do::dataChanged,
                                    Do::importItem,
                                    Do::initialiseSparing,
                                    Do::setData,
                                    Do::getData,
                                    Do::setStartup,
                                    Do::ready,
                                    Do::getItem,
                                    Do::setData,
                                    Do::getPublishedItem,
                                    Do::isItemManaged,
                                    Do::addSetter,
                                    Do::addGetter,
                                    Do::setData,
                                    Do::clear,
                                    Do::setup,
                                    Do::deleteGetters,
                                    Do::deleteSetters,
                                    Do::reloadUserData,
                                    Do::setDefaultUserData,
                                    Do::setStartup,
                                    Do::dataChanged,
                                    Do::importItem};

Step step(bool inner)
{
  Step made;
  if (rarely(4))
    made.what = static_cast<Do>(static_cast<unsigned>(Do::serviceComes) +
                                *upTo(static_cast<unsigned>(Do::noMapFile) - static_cast<unsigned>(Do::serviceComes)));
  else
    made.what = oneOf(operations);
  made.number = *upTo(7);
  switch (made.what)
  {
  case Do::setup:
    made.text = oneOf<std::string>({"phone", "", "other"});
    made.number = rarely(3) ? made.number : 0;
    break;
  case Do::initialise:
    made.text = oneOf(mapNames);
    break;
  case Do::initialiseSparing:
    made.text = oneOf(mapNames);
    made.second = oneOf(prefixes);
    break;
  case Do::addSetter:
  case Do::addGetter:
    made.text = oneOf(callbacks);
    break;
  case Do::isItemManaged:
    made.text = oneOf(columns);
    break;
  case Do::groupFails:
  case Do::groupPasses:
    made.text = oneOf<std::string>({"g", "h", " "});
    made.second = oneOf(remarks);
    break;
  case Do::liveValue:
    made.text = oneOf(callbacks);
    made.second = oneOf(values);
    break;
  case Do::mapFile:
    made.text = oneOf(rootIds);
    made.second = oneOf(schemas);
    break;
  default:
    made.text = oneOf(rootIds);
    made.second = oneOf(values);
    break;
  }
  made.values = requested();
  if (made.what == Do::encryption && inner)
    made.what = Do::ready;
  return made;
}

rc::Gen<Incident> incident()
{
  return rc::gen::exec(
      []
      {
        Incident made;
        made.atCall = *upTo(rarely(2) ? 30 : 6) + 1;
        if (rarely(2))
          made.inner = severalOf(3, rc::gen::exec([] { return step(true); }));
        made.letsOut = !rarely(2);
        return made;
      });
}

rc::Gen<Step> outerStep()
{
  return rc::gen::exec(
      []
      {
        Step made = step(false);
        if (rarely(2))
          made.incidents = severalOf(3, incident());
        return made;
      });
}

} // namespace

rc::Gen<Life> lives()
{
  return rc::gen::exec(
      []
      {
        Life life;
        life.fromFile = !rarely(3);
        life.lastLineEnds = !rarely(4);
        life.absent = rarely(3) ? *upTo(31) : 0;
        life.gate = 6 - (rarely(2) ? *upTo(6) : 0);
        life.map = severalOf(12, mapLine());
        life.replies = severalOf(6, reply());
        life.answers = severalOf(6, answer());
        life.getterValues = rarely(2) ? severalOf(4, textOf(values)) : Texts();
        life.groupReasons = rarely(2) ? severalOf(2, textOf(remarks)) : Texts();
        Step first;
        first.what = Do::initialise;
        first.text = life.fromFile ? "CommsItemMap" : "other";
        life.steps = *rc::gen::container<std::vector<Step>>(outerStep());
        if (!rarely(5))
          life.steps.insert(life.steps.begin(), first);
        return life;
      });
}

} // namespace judge
