// Names for secrets in transcripts. Equal secrets have the same name; the name tells nothing about the secret.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "map/ItemTable.h"
#include "map/Masking.h"
#include "map/SecretTexts.h"

namespace cli::transcript
{

/// Whether a text is a name such as "secret#1".
bool isSecretName(const std::string& text);

/// Gives the names, in the order in which secrets are seen. Of one thread at a time.
class Secrets
{
public:
  /// Borrows both.
  Secrets(const ItemTable& itemTable, const Masking& itsMasking);

  /// The name of a secret; from now on the secret is found in all texts.
  std::string named(const std::string& plain);

  /// As `named`, but the text is not looked for elsewhere: it need not be a secret, and may stand anywhere.
  std::string namedApart(const std::string& plain);

  /// As `named`, of a text as the database holds it: encrypted, or not.
  std::string namedStored(const std::string& cell);

  /// The secret that has this name; nothing when it was not given yet.
  std::optional<std::string> plainOf(const std::string& name) const;

  /// The text without the secrets in it: in elements of XML that hold secrets, and those that are known. Short ones are
  /// looked for as words of their own or not at all, since they stand in harmless words as well.
  std::string without(const std::string& text);

  /// The value that somebody asks for of the item with this root id, which may be one that nobody knows.
  std::string askedValue(const std::string& rootId, const std::string& text);

  /// A value of the item with this root id.
  std::string value(const std::string& rootId, const std::string& text);

  /// A value that passes a callback of this name.
  std::string callbackValue(const std::string& callback, const std::string& text);

private:
  const ItemTable& items;
  const Masking& masking;
  /// Setters and getters of items that are secrets.
  std::set<std::string> callbacks;
  /// What the item map says is no secret, whoever has it.
  std::set<std::string> defaults;
  std::map<std::string, std::string> names;
  std::map<std::string, std::string> plains;
  /// Those that are looked for.
  std::set<std::string> sought;
  /// What is looked for in texts, with its name.
  SecretTexts found;
};

} // namespace cli::transcript
