// Names for C++ out of names that were never meant for it.
#pragma once

#include <set>
#include <string>

namespace cli::skeleton
{

/// "localPort" of "setLocalPort", "set-local-port" or "LOCAL_PORT"'s like: the words of the text, the first in small
/// letters, without a leading "set" or "get". Never a keyword, and never empty.
std::string fieldName(const std::string& callback);

/// The same with a capital, of all words: "DoorBell" of "door-bell".
std::string typeName(const std::string& text);

/// Small letters and digits of the text: "doorbell" of "door-bell". Never a keyword.
std::string namespaceName(const std::string& text);

/// A literal that stands for exactly these bytes.
std::string literal(const std::string& text);

/// Hands every name out once: a second time with a number behind it.
class UniqueNames
{
public:
  std::string claim(const std::string& name);

private:
  std::set<std::string> taken;
};

} // namespace cli::skeleton
