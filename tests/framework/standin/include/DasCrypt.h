// The framework's encryption: a class with an instance behind its operations.
#pragma once

#include <string>

class DasCrypt
{
public:
  static bool toEncryptedText(const std::string& in, std::string& out);
  static bool fromEncryptedText(const std::string& in, std::string& out);

private:
  static DasCrypt& instance();
  unsigned char key = 0x5a;
};
