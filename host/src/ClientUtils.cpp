// A name looks secret by its words, wherever they begin; what a service marked is secret whatever it is called.
#include "host/Secrets.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <shared_mutex>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "Everlasting.h"
#include "XmlText.h"

namespace host
{
namespace
{
struct MarkedSecrets
{
  std::shared_mutex mutex;
  std::unordered_set<std::string> rootIds;
};

MarkedSecrets& markedSecrets()
{
  static const Everlasting<MarkedSecrets> marked;
  return *marked;
}

bool isMarked(const std::string& rootId)
{
  MarkedSecrets& marked = markedSecrets();
  const std::shared_lock<std::shared_mutex> lock(marked.mutex);
  return marked.rootIds.count(rootId) != 0;
}

enum class Kind
{
  lower,
  upper,
  other
};

Kind kindOf(char character)
{
  if (character >= 'a' && character <= 'z')
    return Kind::lower;
  return character >= 'A' && character <= 'Z' ? Kind::upper : Kind::other;
}

/// Whether a word of a name begins at `i`: after anything but a letter, at "userPin", and at the C of "PINCode".
bool beginsWord(const std::string& name, std::size_t i)
{
  const Kind before = i == 0 ? Kind::other : kindOf(name[i - 1]);
  const Kind after = i + 1 == name.size() ? Kind::other : kindOf(name[i + 1]);
  if (before == Kind::other)
    return true;
  return kindOf(name[i]) == Kind::upper && (before == Kind::lower || after == Kind::lower);
}

/// The words of a name in lower case, letters only.
std::vector<std::string> wordsOf(const std::string& name)
{
  std::vector<std::string> words;
  for (std::size_t i = 0; i < name.size(); ++i)
  {
    const Kind kind = kindOf(name[i]);
    if (kind == Kind::other)
      continue;
    if (beginsWord(name, i))
      words.emplace_back();
    words.back() += kind == Kind::upper ? static_cast<char>(name[i] - 'A' + 'a') : name[i];
  }
  return words;
}

std::string joined(const std::vector<std::string>& words)
{
  std::string text;
  for (const std::string& word : words)
    text += word;
  return text;
}

template <typename Texts>
bool contains(const Texts& texts, const std::string& text)
{
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

/// Long enough to tell a secret wherever they stand, however the words are joined.
bool holdsSecretPhrase(const std::string& letters)
{
  static constexpr std::array<std::string_view, 19> phrases = {
      "password",  "passwd",    "passphrase", "passcode",      "credential",       "community", "privatekey",
      "secretkey", "sharedkey", "accesskey",  "encryptionkey", "masterkey",        "apikey",    "authkey",
      "wpakey",    "wepkey",    "privkey",    "privacykey",    "authenticationkey"};
  return std::any_of(phrases.begin(), phrases.end(),
                     [&](std::string_view phrase) { return letters.find(phrase) != std::string::npos; });
}

/// Short words count only as words of their own: there is a pin in a spinner, too.
bool isSecretWord(const std::string& word)
{
  static constexpr std::array<std::string_view, 11> words = {"pin",    "pins",    "pincode", "puk",   "psk",   "pwd",
                                                             "secret", "secrets", "passkey", "token", "tokens"};
  return contains(words, word);
}

bool endsWith(const std::string& word, std::string_view end)
{
  return word.size() > end.size() && word.compare(word.size() - end.size(), end.size(), end) == 0;
}

/// Words that were joined without a trace, such as "sharedsecret" or "authtoken".
bool endsLikeSecret(const std::string& word)
{
  static constexpr std::array<std::string_view, 4> ends = {"secret", "secrets", "token", "tokens"};
  return std::any_of(ends.begin(), ends.end(), [&](std::string_view end) { return endsWith(word, end); });
}
} // namespace

void markSecret(const std::string& rootId)
{
  MarkedSecrets& marked = markedSecrets();
  const std::unique_lock<std::shared_mutex> lock(marked.mutex);
  marked.rootIds.insert(rootId);
}

bool isSecret(const std::string& name)
{
  if (isMarked(name))
    return true;
  const std::vector<std::string> words = wordsOf(name);
  // "pass" opens many harmless names, so it counts at the end alone.
  if (!words.empty() && words.back() == "pass")
    return true;
  return holdsSecretPhrase(joined(words)) ||
         std::any_of(words.begin(), words.end(),
                     [](const std::string& word) { return isSecretWord(word) || endsLikeSecret(word); });
}
} // namespace host

std::string ClientUtils::escapeXMLString(const std::string& text)
{
  return host::escapedElementText(text);
}

std::string ClientUtils::hidePassword(const std::string& rootId, const std::string& value)
{
  // An empty secret is masked, too: that there is none is worth knowing as well.
  return host::isSecret(rootId) ? "*****" : value;
}
