#include "Surroundings.h"

#include <cstdio>
#include <fstream>

#include "Trace.h"

namespace judge
{

namespace
{

const std::array<const char*, 4> serviceNames = {"DataAccessServiceIfc", "PhysicalInterfaceServiceIfc", "LocalMgmtIfc",
                                                 "SecurityLogServiceIfc"};

/// Answers as the life's list says, and remembers what it accepted.
class ScriptedSetter : public recording::Setter
{
public:
  ScriptedSetter(const std::string& callbackName, Surroundings& owner) : Setter(callbackName), around(owner)
  {
    around.setters.insert(this);
  }

  ~ScriptedSetter() override
  {
    around.setters.erase(this);
  }

  bool setValue(const std::string& value, const std::string& indexValue, std::string& error) override
  {
    const auto& answers = around.life.answers;
    const Answer answer = answers.empty() ? Answer() : answers[around.setterCalls++ % answers.size()];
    accepts = answer.accepts;
    remark = answer.remark;
    hook = around.called;
    recording::note("error text " + recording::quoted(error));
    const bool accepted = Setter::setValue(value, indexValue, error);
    if (accepted)
      around.live[{name, indexValue}] = value;
    return accepted;
  }

private:
  Surroundings& around;
};

class ScriptedGetter : public recording::Getter
{
public:
  ScriptedGetter(const std::string& callbackName, Surroundings& owner) : Getter(callbackName), around(owner)
  {
    around.getters.insert(this);
  }

  ~ScriptedGetter() override
  {
    around.getters.erase(this);
  }

  std::string getValue(const std::string& indexValue) override
  {
    const auto& odd = around.life.getterValues;
    value = odd.empty() ? "@" : odd[around.getterCalls++ % odd.size()];
    if (value == "@")
      value = around.live[{name, indexValue}];
    hook = around.called;
    return Getter::getValue(indexValue);
  }

private:
  Surroundings& around;
};

} // namespace

Surroundings::Surroundings(const Life& lived) : life(lived)
{
  const recording::Hook counted = [this]
  {
    if (called)
      called();
  };
  for (recording::Hook* hook :
       {&context.hook, &das.hook, &interfaces.hook, &store.hook, &securityLog.hook, &validator.hook})
    *hook = counted;
  das.fallback = [this](const std::string& request)
  {
    static const Reply good;
    const auto& replies = life.replies;
    return replyTo(request, replies.empty() ? good : replies[requests++ % replies.size()], life.map);
  };
  for (unsigned service = 0; service < serviceNames.size(); ++service)
    place(service, ((life.absent >> service) & 1U) != 0 ? nullptr : own(service));
  fillDictionary();
  if (life.fromFile)
    writeMap();
  else
    removeMap();
}

Surroundings::~Surroundings()
{
  while (!setters.empty())
    delete *setters.begin();
  while (!getters.empty())
    delete *getters.begin();
}

recording::Setter* Surroundings::newSetter(const std::string& name)
{
  return new ScriptedSetter(name, *this);
}

recording::Getter* Surroundings::newGetter(const std::string& name)
{
  return new ScriptedGetter(name, *this);
}

void Surroundings::place(unsigned service, Executable* object)
{
  const std::string name = serviceNames.at(service % serviceNames.size());
  if (object == nullptr)
    context.services.erase(name);
  else
    context.services[name] = object;
}

Executable* Surroundings::own(unsigned service)
{
  const std::array<Executable*, 4> services = {&das, &interfaces, &store, &securityLog};
  return services.at(service % services.size());
}

void Surroundings::writeMap(const MapLine* extra)
{
  std::ofstream file("CommsSettings.csv", std::ios::binary);
  file << life.mapText();
  if (extra != nullptr)
    file << extra->text() << '\n';
}

void Surroundings::removeMap()
{
  std::remove("CommsSettings.csv");
}

/// The same map under two names: that of the file, for when there is none, and another.
void Surroundings::fillDictionary()
{
  const std::array<const char*, 12> keys = {"rootId",        "dasSchema",   "dasItem", "dasIndexName",
                                            "dasIndexValue", "default",     "setter",  "getter",
                                            "userData",      "isGroupItem", "unused",  "dasEncrypted"};
  auto& dictionary = store.dictionaries["other"];
  for (std::size_t i = 0; i < life.map.size(); ++i)
  {
    const MapLine& line = life.map[i];
    for (std::size_t key = 0; key < keys.size(); ++key)
    {
      if (line.shape == LineShape::tooShort || (line.shape == LineShape::tooFewColumns && key == 5))
        continue;
      dictionary["/item[" + std::to_string(i + 1) + "]/" + keys[key]] = line.columns[key];
    }
  }
  store.dictionaries["CommsItemMap"] = dictionary;
}

} // namespace judge
