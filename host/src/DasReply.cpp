// Replies are written as texts, from the front to the end; a value that XML cannot carry ends the reply.
#include "DasReply.h"

#include "Log.h"
#include "Refusal.h"
#include "XmlText.h"

namespace host
{
namespace
{
constexpr const char* closing = "</Schema>";

/// Room for a reply of few cells, so that it grows once.
constexpr std::size_t usualLength = 400;

std::string opening(const std::string& schema, const char* reason)
{
  std::string text;
  text.reserve(usualLength);
  text.append(R"(<?xml version="1.0" encoding="utf-8"?><Schema name=")");
  appendAttributeText(text, schema);
  return text.append("\"><ReasonForMessage>").append(reason).append("</ReasonForMessage>");
}

[[noreturn]] void refuse(const std::string& column, const char* why)
{
  SDM_HOST_LOG(2, "column \"%s\": %s", column.c_str(), why);
  throw Refusal(why);
}
} // namespace

DasReadReply::DasReadReply(const std::string& schema) : text(opening(schema, "read_response"))
{
}

void DasReadReply::beginEntry()
{
  text += "<Entry>";
}

void DasReadReply::endEntry()
{
  text += "</Entry>";
}

void DasReadReply::column(const std::string& name, bool isElementName, const std::string& value)
{
  // The log alone names the column: readers that look for its name in a reply have to find nothing.
  if (!isElementName)
    refuse(name, "the schema has a column whose name cannot be written as an element");
  if (!isXmlText(value))
    refuse(name, "the database holds a value that XML cannot carry");
  text.append(1, '<').append(name).append(1, '>');
  appendElementText(text, value);
  text.append("</").append(name).append(1, '>');
}

std::string DasReadReply::finished()
{
  text += closing;
  return std::move(text);
}

std::string dasUpdateReply(const std::string& schema)
{
  std::string text = opening(schema, "update_response");
  text += closing;
  return text;
}

std::string dasErrorReply(const std::string& schema, const std::string& why)
{
  return opening(schema, "error_response") + "<Error>" +
         escapedElementText(isXmlText(why) ? why : "unreadable reason") + "</Error>" + closing;
}
} // namespace host
