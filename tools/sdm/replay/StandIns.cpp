// Tries kinds of texts until the setters take one.
#include "StandIns.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "base/Text.h"
#include "base/Words.h"
#include "transcript/Secrets.h"

namespace cli::replay
{
namespace
{

struct Form
{
  bool digits;
  std::size_t size;
};

/// What services take, the most usual first.
constexpr std::array<Form, 9> takenForms = {
    {{false, 12}, {true, 6}, {true, 8}, {true, 4}, {false, 8}, {false, 16}, {false, 32}, {false, 64}, {false, 24}}};
/// And what they do not.
constexpr std::array<Form, 4> refusedForms = {{{false, 2}, {false, 300}, {true, 20}, {false, 5}}};

constexpr std::size_t choices = takenForms.size() + refusedForms.size();

/// A text that ends in the number of its secret, so that no two are equal.
std::string made(const Form& form, const std::string& number)
{
  static const std::string letters = "StandIn0forSecret0";
  static const std::string digits = "4815162342";
  const std::string& from = form.digits ? digits : letters;
  std::string text;
  while (text.size() + number.size() < form.size)
    text += from[text.size() % from.size()];
  return text + number;
}

bool looksLikeDigits(const std::string& name)
{
  const std::string lower = lowered(name);
  return lower.find("pin") != std::string::npos || lower.find("code") != std::string::npos ||
         lower.find("puk") != std::string::npos;
}

} // namespace

StandIns::StandIns(const transcript::Transcript& itsTranscript) : transcript(itsTranscript)
{
  for (std::size_t i = 0; i < transcript.events.size(); ++i)
  {
    const transcript::Event& event = transcript.events[i];
    const std::string kind = transcript::kindOf(event);
    if (kind == "command")
      noteCommand(splitWords(event.content["command"]).list, i);
    else if (kind == "setter")
      noteVerdict(event);
  }
}

void StandIns::noteCommand(const std::vector<std::string>& words, std::size_t event)
{
  for (std::size_t i = 0; i < words.size(); ++i)
  {
    // What a callback had before any command is a default, and known.
    if (!transcript::isSecretName(words[i]) || judged.count(words[i]) != 0 || secrets.count(words[i]) != 0)
      continue;
    Secret secret;
    secret.command = event;
    secret.digits = i > 0 && looksLikeDigits(words[i - 1]);
    secrets[words[i]] = secret;
    order.push_back(words[i]);
  }
}

void StandIns::noteVerdict(const transcript::Event& event)
{
  if (!event.content.contains("value") || !event.content["value"].is_string())
    return;
  const std::string value = event.content["value"];
  const bool accepted = event.content["accepted"];
  if (!transcript::isSecretName(value) || !judged.emplace(value, accepted).second)
    return;
  if (const auto secret = secrets.find(value); secret != secrets.end())
    secret->second.accepted = accepted;
}

std::string StandIns::of(const std::string& name) const
{
  const auto secret = secrets.find(name);
  return secret == secrets.end() ? made(takenForms.front(), name) : chosen(name, secret->second);
}

std::string StandIns::chosen(const std::string& name, const Secret& secret) const
{
  std::vector<Form> forms(takenForms.begin(), takenForms.end());
  if (secret.digits)
    std::stable_partition(forms.begin(), forms.end(), [](const Form& form) { return form.digits; });
  forms.insert(secret.accepted ? forms.end() : forms.begin(), refusedForms.begin(), refusedForms.end());
  return made(forms[secret.choice], name.substr(name.find('#') + 1));
}

bool StandIns::next(std::size_t event)
{
  if (event >= transcript.events.size())
    return false;
  const nlohmann::ordered_json& content = transcript.events[event].content;
  const auto value = content.find("value");
  std::string name = value != content.end() && value->is_string() ? value->get<std::string>() : "";
  if (secrets.count(name) == 0)
  {
    // The last command before, if it brought one.
    std::size_t command = event;
    while (command > 0 && transcript::kindOf(transcript.events[command]) != "command")
      --command;
    const auto brought = std::find_if(order.rbegin(), order.rend(),
                                      [&](const std::string& each) { return secrets[each].command == command; });
    if (brought == order.rend())
      return false;
    name = *brought;
  }
  Secret& secret = secrets[name];
  return ++secret.choice < choices;
}

} // namespace cli::replay
