// Commands that look behind the scenes.
#include <array>
#include <charconv>
#include <iomanip>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "CommandFunctions.h"
#include "base/Shown.h"
#include "host/DeviceLog.h"
#include "map/TrafficText.h"

namespace cli
{
namespace
{

constexpr std::size_t exchangesByDefault = 3;
constexpr std::size_t linesByDefault = 10;
constexpr int mostDetailed = 6;

std::optional<std::size_t> wholeNumber(const std::string& text)
{
  std::size_t number = 0;
  const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (problem != std::errc() || end != text.data() + text.size())
    return std::nullopt;
  return number;
}

std::optional<std::size_t> countFrom(const Arguments& arguments, std::size_t otherwise)
{
  return arguments.empty() ? otherwise : wholeNumber(arguments.front());
}

void printExchange(Session& session, const host::Exchange& exchange)
{
  const Masking& masking = session.running.masking();
  const double milliseconds = static_cast<double>(exchange.duration.count()) / 1000.0;
  session.out << session.style.strong("#" + std::to_string(exchange.number) + " request") << "\n"
              << indented(exchange.request, masking, "  ") << session.style.strong("reply") << " after " << std::fixed
              << std::setprecision(2) << milliseconds << " ms\n";
  if (exchange.failure.empty())
    session.out << indented(exchange.reply, masking, "  ");
  else
    session.out << "  " << session.style.bad("none: ") << shown(exchange.failure) << "\n";
}

std::vector<std::string> fieldsOf(const std::string& line)
{
  std::vector<std::string> fields;
  std::istringstream text(line);
  for (std::string field; std::getline(text, field, '\t');)
    fields.push_back(shownAgain(field));
  return fields;
}

/// A record with the names of its numbers; what is none is shown as it stands. User and origin are left out where the
/// record has none.
std::string recordText(const std::string& line)
{
  constexpr std::array<const char*, 4> names = {"facility ", "severity ", "type ", "class "};
  constexpr std::size_t result = 5;
  const std::vector<std::string> fields = fieldsOf(line);
  const bool isRecord = fields.size() == 9 && (fields[result] == "ok" || fields[result] == "failed");
  std::string text;
  for (std::size_t i = 0; i < fields.size(); ++i)
  {
    const bool isCode = isRecord && i >= 1 && i <= names.size();
    if (isRecord && i > result + 1)
      text += fields[i] == "-" ? "" : std::string(i == 7 ? "  user " : "  origin ") + fields[i];
    else
      text += std::string(i == 0 ? "" : "  ") + (isCode ? names[i - 1] : "") + fields[i];
  }
  return text;
}

} // namespace

Outcome showTraffic(Session& session, const Arguments& arguments)
{
  const auto count = countFrom(arguments, exchangesByDefault);
  if (!count)
    return session.refuse("traffic takes the number of requests to show");
  const auto exchanges = session.running.device().traffic().exchanges();
  const std::size_t first = exchanges.size() > *count ? exchanges.size() - *count : 0;
  for (std::size_t i = first; i < exchanges.size(); ++i)
    printExchange(session, exchanges[i]);
  if (exchanges.empty())
    session.out << "no request was sent yet\n";
  return Outcome::done;
}

Outcome showSecurityLog(Session& session, const Arguments& arguments)
{
  const auto count = countFrom(arguments, linesByDefault);
  if (!count)
    return session.refuse("securitylog takes the number of lines to show");
  const auto lines = session.running.device().securityLog().lastLines(*count);
  for (const std::string& line : lines)
    session.out << recordText(line) << "\n";
  if (lines.empty())
    session.out << "the security log is empty\n";
  return Outcome::done;
}

Outcome changeLogLevel(Session& session, const Arguments& arguments)
{
  if (arguments.empty())
  {
    session.out << "log level " << host::logLevel() << "\n";
    return Outcome::done;
  }
  const auto level = wholeNumber(arguments.front());
  if (!level || *level > mostDetailed)
    return session.refuse("the log level must be a whole number from 0 to " + std::to_string(mostDetailed));
  host::setLogLevel(static_cast<int>(*level));
  session.out << "log level " << *level << "\n";
  return Outcome::done;
}

} // namespace cli
