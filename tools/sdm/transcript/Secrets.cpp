// Known secrets are replaced wherever they stand, escaped and encrypted forms included.
#include "Secrets.h"

#include <DasCrypt.h>

#include <algorithm>
#include <cctype>
#include <exception>
#include <pugixml.hpp>

#include "base/Text.h"
#include "host/Faults.h"
#include "host/Secrets.h"

namespace cli::transcript
{
namespace
{

constexpr const char* prefix = "secret#";

/// Shorter ones stand in harmless words of a transcript as well.
constexpr std::size_t shortest = 4;

bool isWordCharacter(char c)
{
  return std::isalnum(static_cast<unsigned char>(c)) != 0;
}

bool isNameCharacter(char c)
{
  return isWordCharacter(c) || c == '_' || c == '-' || c == '.' || c == ':' || static_cast<unsigned char>(c) >= 0x80;
}

/// What the content of an element means.
std::string unescaped(const std::string& content)
{
  pugi::xml_document document;
  const std::string element = "<e>" + content + "</e>";
  constexpr unsigned keepsBlanks = pugi::parse_default | pugi::parse_ws_pcdata;
  return document.load_buffer(element.data(), element.size(), keepsBlanks) ? document.child("e").child_value()
                                                                           : content;
}

/// The cell itself when it is not encrypted, or nobody can open it.
std::string decrypted(const std::string& cell)
{
  // Who writes down is not one of those who fail.
  const host::WithoutFaults asItIs;
  try
  {
    std::string plain;
    return !cell.empty() && DasCrypt::fromEncryptedText(cell, plain) ? plain : cell;
  }
  catch (const std::exception&)
  {
    return cell;
  }
}

/// The next start tag from a place on: where its name and its content begin. npos without one.
struct StartTag
{
  std::string name;
  std::size_t content = std::string::npos;
};

StartTag nextStartTag(const std::string& text, std::size_t from)
{
  for (std::size_t open = text.find('<', from); open != std::string::npos; open = text.find('<', open + 1))
  {
    std::size_t end = open + 1;
    while (end < text.size() && isNameCharacter(text[end]))
      ++end;
    const std::size_t close = text.find('>', end);
    if (end > open + 1 && close != std::string::npos && text[close - 1] != '/')
      return {text.substr(open + 1, end - open - 1), close + 1};
  }
  return {};
}

} // namespace

bool isSecretName(const std::string& text)
{
  const std::string start = prefix;
  return text.size() > start.size() && beginsWith(text, start) &&
         std::all_of(text.begin() + static_cast<std::ptrdiff_t>(start.size()), text.end(),
                     [](unsigned char c) { return std::isdigit(c) != 0; });
}

Secrets::Secrets(const ItemTable& itemTable, const Masking& itsMasking)
    : items(itemTable), masking(itsMasking), found(shortest)
{
  for (const MapItem& item : items.items())
  {
    defaults.insert(item.defaultValue);
    defaults.insert(item.alternativeDefault);
    if (masking.isSecret(item))
    {
      callbacks.insert(item.setter);
      callbacks.insert(item.getter);
    }
  }
  callbacks.erase("");
}

std::string Secrets::namedApart(const std::string& plain)
{
  const auto [known, isNew] = names.emplace(plain, prefix + std::to_string(names.size() + 1));
  if (isNew)
    plains[known->second] = plain;
  return known->second;
}

std::string Secrets::named(const std::string& plain)
{
  std::string name = namedApart(plain);
  if (defaults.count(plain) == 0 && sought.insert(plain).second)
  {
    for (const std::string& form : formsOf(plain))
      found.add(form, name);
  }
  return name;
}

std::string Secrets::namedStored(const std::string& cell)
{
  const std::string plain = decrypted(cell);
  if (plain == cell)
    return named(cell);
  std::string name = named(plain);
  found.add(cell, name);
  return name;
}

std::optional<std::string> Secrets::plainOf(const std::string& name) const
{
  const auto known = plains.find(name);
  return known == plains.end() ? std::nullopt : std::optional<std::string>(known->second);
}

std::string Secrets::without(const std::string& text)
{
  std::string safe;
  std::size_t done = 0;
  for (StartTag tag = nextStartTag(text, 0); tag.content != std::string::npos; tag = nextStartTag(text, tag.content))
  {
    const std::size_t end = std::min(text.find('<', tag.content), text.size());
    const bool holdsElements = end + 1 < text.size() && text[end] == '<' && text[end + 1] != '/';
    if (holdsElements || !masking.isSecretElement(tag.name))
      continue;
    safe += found.without(text.substr(done, tag.content - done)) +
            namedStored(unescaped(text.substr(tag.content, end - tag.content)));
    done = end;
  }
  return safe + found.without(text.substr(done));
}

std::string Secrets::askedValue(const std::string& rootId, const std::string& text)
{
  return items.find(rootId) == nullptr && !masking.isSecret(rootId) ? namedApart(text) : value(rootId, text);
}

std::string Secrets::value(const std::string& rootId, const std::string& text)
{
  return masking.isSecret(rootId) ? namedStored(text) : without(text);
}

std::string Secrets::callbackValue(const std::string& callback, const std::string& text)
{
  return callbacks.count(callback) != 0 || host::isSecret(callback) ? named(text) : without(text);
}

} // namespace cli::transcript
