// Text helpers of the framework: inline, so that they end up in whatever uses them.
#pragma once

#include <string>

class ClientUtils
{
public:
  static std::string escapeXMLString(const std::string& text)
  {
    std::string escaped;
    for (char c : text)
      escaped += std::string("&<>\"'\r").find(c) == std::string::npos ? std::string(1, c)
                                                                      : "&#" + std::to_string(int(c)) + ";";
    return escaped;
  }

  static std::string hidePassword(const std::string& rootId, const std::string& value)
  {
    return rootId.find("assword") == std::string::npos ? value : "(hidden)";
  }
};
