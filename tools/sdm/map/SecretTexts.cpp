// A secret is looked for in all forms in which texts may show it: as it is, as XML, as JSON, escaped.
#include "SecretTexts.h"

#include <ClientUtils.h>

#include <algorithm>
#include <cctype>
#include <nlohmann/json.hpp>

#include "base/JsonText.h"
#include "base/Shown.h"

namespace cli
{
namespace
{

/// From here on a text is looked for inside words, too.
constexpr std::size_t longEnough = 8;

bool isWordCharacter(char c)
{
  return std::isalnum(static_cast<unsigned char>(c)) != 0;
}

bool standsAlone(const std::string& text, std::size_t place, std::size_t size)
{
  return (place == 0 || !isWordCharacter(text[place - 1])) &&
         (place + size == text.size() || !isWordCharacter(text[place + size]));
}

std::string withReplaced(std::string text, const std::string& what, const std::string& with)
{
  for (std::size_t i = text.find(what); i != std::string::npos; i = text.find(what, i + with.size()))
    text.replace(i, what.size(), with);
  return text;
}

std::string inJson(const std::string& text)
{
  using Json = nlohmann::json;
  const std::string quoted = jsonText(Json(text));
  return quoted.substr(1, quoted.size() - 2);
}

} // namespace

std::vector<std::string> formsOf(const std::string& secret)
{
  const std::string xml = ClientUtils::escapeXMLString(secret);
  const std::string quotes = withReplaced(withReplaced(xml, "\"", "&quot;"), "'", "&apos;");
  const std::string json = inJson(secret);
  std::vector<std::string> forms;
  for (const std::string& form : {secret, xml, quotes, withReplaced(quotes, "&apos;", "&#39;"), shown(secret), json,
                                  withReplaced(json, "/", "\\/")})
  {
    if (std::find(forms.begin(), forms.end(), form) == forms.end())
      forms.push_back(form);
  }
  return forms;
}

void SecretTexts::add(const std::string& text, const std::string& inItsPlace)
{
  if (!text.empty() && text.size() >= least)
    found.emplace(text, inItsPlace);
}

std::string SecretTexts::without(const std::string& text) const
{
  std::string safe;
  for (std::size_t i = 0; i < text.size();)
  {
    const auto here = std::find_if(found.begin(), found.end(),
                                   [&](const auto& each)
                                   {
                                     const std::string& form = each.first;
                                     return text.compare(i, form.size(), form) == 0 &&
                                            (form.size() >= longEnough || standsAlone(text, i, form.size()));
                                   });
    if (here == found.end())
    {
      safe += text[i++];
      continue;
    }
    safe += here->second;
    i += here->first.size();
  }
  return safe;
}

} // namespace cli
