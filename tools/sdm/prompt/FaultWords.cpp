// One table for both ways: from words to faults and from faults to words.
#include "FaultWords.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "base/Shown.h"
#include "base/Suggestion.h"

namespace cli
{
namespace
{

using host::FaultKind;
using host::FaultPlace;

struct Name
{
  const char* place;
  const char* fault;
  FaultPlace itsPlace;
  FaultKind itsKind;
};

constexpr std::array<Name, 10> names = {{
    {"das", "absent", FaultPlace::das, FaultKind::absent},
    {"das", "slow", FaultPlace::das, FaultKind::slow},
    {"das", "empty", FaultPlace::das, FaultKind::empty},
    {"das", "malformed", FaultPlace::das, FaultKind::malformed},
    {"das", "refused", FaultPlace::das, FaultKind::refused},
    {"das", "wrong-kind", FaultPlace::das, FaultKind::wrongKind},
    {"encryption", "fails", FaultPlace::encryption, FaultKind::fails},
    {"store", "absent", FaultPlace::store, FaultKind::absent},
    {"store", "refuses", FaultPlace::store, FaultKind::refuses},
    {"disk", "full", FaultPlace::disk, FaultKind::full},
}};

constexpr std::uint64_t longestDelay = 3600000;

std::vector<std::string> places()
{
  std::vector<std::string> list;
  for (const Name& name : names)
  {
    if (list.empty() || list.back() != name.place)
      list.emplace_back(name.place);
  }
  return list;
}

std::vector<std::string> faultsOf(const std::string& place)
{
  std::vector<std::string> list;
  for (const Name& name : names)
  {
    if (place == name.place)
      list.emplace_back(name.fault);
  }
  return list;
}

std::string joined(const std::vector<std::string>& words)
{
  std::string text;
  for (const std::string& word : words)
    text += (text.empty() ? "" : ", ") + word;
  return text;
}

[[noreturn]] void unknown(const std::string& what, const std::string& word, const std::vector<std::string>& known)
{
  const std::string hint = didYouMean(word, known);
  throw FaultWordsError(what + " " + shownValue(word) + "; " + (hint.empty() ? "there are " + joined(known) : hint));
}

std::uint64_t number(const std::string& word, std::uint64_t most, const std::string& what)
{
  std::uint64_t value = 0;
  const auto [end, problem] = std::from_chars(word.data(), word.data() + word.size(), value);
  if (problem != std::errc() || end != word.data() + word.size() || value == 0 || value > most)
    throw FaultWordsError(what + " is a whole number from 1 to " + std::to_string(most) + ", not " + shownValue(word));
  return value;
}

const Name& find(const std::string& place, const std::string& fault)
{
  const std::vector<std::string> known = faultsOf(place);
  if (known.empty())
    unknown("there is no fault of", place, places());
  if (fault.empty())
    throw FaultWordsError("fault " + place + " needs one of " + joined(known));
  const auto* const found = std::find_if(std::begin(names), std::end(names),
                                         [&](const Name& name) { return place == name.place && fault == name.fault; });
  if (found == std::end(names))
    unknown("there is no fault " + place, fault, known);
  return *found;
}

} // namespace

host::Fault readFault(const std::vector<std::string>& words)
{
  const auto word = [&](std::size_t i) { return i < words.size() ? words[i] : std::string(); };
  const Name& name = find(word(0), word(1));
  host::Fault fault;
  fault.place = name.itsPlace;
  fault.kind = name.itsKind;
  std::size_t next = 2;
  if (fault.kind == FaultKind::slow)
    fault.delay = std::chrono::milliseconds(number(word(next++), longestDelay, "the delay in milliseconds"));
  if (next < words.size() && fault.kind == FaultKind::full)
    throw FaultWordsError("a full disk counts no calls; `fault off` makes room");
  if (next < words.size())
    fault.calls = number(words[next++], 1000000, "the number of calls");
  if (next < words.size())
    throw FaultWordsError("nothing is expected behind the number of calls, but " + shownValue(words[next]));
  return fault;
}

std::string describeFault(const host::Fault& fault)
{
  const auto* const name =
      std::find_if(std::begin(names), std::end(names),
                   [&](const Name& each) { return each.itsPlace == fault.place && each.itsKind == fault.kind; });
  std::string text = std::string(name->place) + " " + name->fault;
  if (fault.kind == FaultKind::slow)
    text += " " + std::to_string(fault.delay.count());
  if (!fault.calls)
    return text + ", until `fault off`";
  return text + ", for " + std::to_string(*fault.calls) + (*fault.calls == 1 ? " more call" : " more calls");
}

std::vector<std::string> faultWordsAfter(const std::vector<std::string>& words)
{
  if (words.size() == 1)
    return faultsOf(words.front());
  if (!words.empty())
    return {};
  std::vector<std::string> list = places();
  list.emplace_back("off");
  return list;
}

} // namespace cli
