// Lives as texts: the map as its file has it, and all of it for readers.
#include "Life.h"

#include <ostream>

namespace judge
{

namespace
{

const std::array<const char*, 34> names = {
    "setup",
    "initialise",
    "initialiseWithoutSettingDefaultData",
    "ready",
    "setData",
    "getData",
    "manageableDataChanged",
    "addSetter",
    "addGetter",
    "getItem",
    "getPublishedItem",
    "setStartup",
    "clearAllManagedData",
    "setDefaultUserData",
    "importItemFromDAS",
    "clear and deleteGetters",
    "clear and deleteSetters",
    "reloadUserData",
    "isItemManaged",
    "service comes",
    "service goes",
    "service is another",
    "store refuses",
    "store accepts",
    "store objects",
    "store holds",
    "group fails",
    "group passes",
    "live value",
    "interface count",
    "gate",
    "encryption works",
    "map file",
    "no map file",
};

std::string shown(const std::string& text)
{
  std::string all = "\"";
  for (const char c : text)
  {
    const auto byte = static_cast<unsigned char>(c);
    const char* const digits = "0123456789abcdef";
    if (byte >= 32 && byte < 127)
      all += c;
    else
      all += std::string("\\x") + digits[byte >> 4U] + digits[byte & 15U];
  }
  return all.size() > 140 ? all.substr(0, 100) + "...\" (" + std::to_string(text.size()) + " bytes)" : all + '"';
}

void show(const Step& step, const std::string& indent, std::ostream& out)
{
  out << indent << nameOf(step.what);
  if (!step.text.empty() || !step.second.empty())
    out << ' ' << shown(step.text);
  if (!step.second.empty())
    out << ' ' << shown(step.second);
  if (step.number != 0)
    out << ' ' << step.number;
  for (const auto& [name, value] : step.values)
    out << ' ' << shown(name) << '=' << shown(value);
  out << '\n';
  for (const Incident& incident : step.incidents)
  {
    out << indent << "  at call " << incident.atCall << (incident.inner.empty() ? " throws" : "");
    out << (incident.inner.empty() || incident.letsOut ? "\n" : " contains what these throw\n");
    for (const Step& inner : incident.inner)
      show(inner, indent + "    ", out);
  }
}

void show(const Reply& reply, std::ostream& out)
{
  out << "  kind " << shown(reply.kind) << " schema " << shown(reply.schema) << " items " << reply.items;
  out << (reply.indexLast ? " index last" : "") << (reply.kindLast ? " kind last" : "") << ' ' << reply.extra;
  out << " damage " << static_cast<int>(reply.damage) << " cut at " << reply.cutAt << " cells";
  for (const std::string& cell : reply.cells)
    out << ' ' << shown(cell);
  out << '\n';
}

} // namespace

std::string nameOf(Do what)
{
  return names.at(static_cast<std::size_t>(what));
}

std::string MapLine::text() const
{
  std::string line = columns[0];
  if (shape == LineShape::tooShort)
    return line.substr(0, 9);
  for (std::size_t i = 1; i < columns.size(); ++i)
    line += (shape == LineShape::tooFewColumns && i == 5 ? "" : ",") + columns[i];
  if (shape == LineShape::tooManyColumns)
    line += ",more,and more";
  if (shape == LineShape::overlong)
    line += std::string(520 - line.size() % 40, '.') + ",S,C,,,rest,k,k,,,,";
  if (shape == LineShape::carriageReturn)
    line += '\r';
  if (shape == LineShape::nulByte)
    line.insert(line.size() / 2, 1, '\0');
  return line;
}

std::string Life::mapText() const
{
  std::string text;
  for (const MapLine& line : map)
    text += line.text() + '\n';
  if (!lastLineEnds && !text.empty())
    text.pop_back();
  return text;
}

void showValue(const Life& life, std::ostream& out)
{
  out << "map (" << (life.fromFile ? "file" : "dictionary") << (life.lastLineEnds ? "" : ", no last line end")
      << "), gate " << life.gate << ", absent " << life.absent << '\n';
  for (const MapLine& line : life.map)
    out << "  " << shown(line.text()) << '\n';
  out << "replies\n";
  for (const Reply& reply : life.replies)
    show(reply, out);
  out << "setters answer";
  for (const Answer& answer : life.answers)
    out << ' ' << (answer.accepts ? "yes" : "no") << shown(answer.remark);
  out << "\ngetters answer";
  for (const std::string& value : life.getterValues)
    out << ' ' << shown(value);
  out << "\ngroup reasons";
  for (const std::string& reason : life.groupReasons)
    out << ' ' << shown(reason);
  out << "\nsteps\n";
  for (std::size_t i = 0; i < life.steps.size(); ++i)
    show(life.steps[i], "  " + std::to_string(i + 1) + " ", out);
}

} // namespace judge
