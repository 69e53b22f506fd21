// Encryption, as little as the contract asks for, and the constants.
#include <DasCrypt.h>
#include <RejectReasonsStrings.h>

namespace RejectReasonsStrings
{
const std::string unchanged_data = "same_value";
const std::string not_changed = "kept_value";
const std::string out_of_range = "out_of_range";
} // namespace RejectReasonsStrings

namespace
{
const char digits[] = "ABCDEFGHIJKLMNOP"; // A quarter of base64's alphabet, two of them a byte.
} // namespace

DasCrypt& DasCrypt::instance()
{
  static DasCrypt only;
  return only;
}

bool DasCrypt::toEncryptedText(const std::string& in, std::string& out)
{
  out = "QQ";
  for (const char c : in)
  {
    const auto byte = static_cast<unsigned>(static_cast<unsigned char>(c)) ^ instance().key;
    out += digits[byte >> 4U];
    out += digits[byte & 15U];
  }
  out.append(out.size() % 4 == 0 ? 0 : 2, '=');
  return true;
}

bool DasCrypt::fromEncryptedText(const std::string& in, std::string& out)
{
  if (in.compare(0, 2, "QQ") != 0)
    return false;
  std::string plain;
  for (std::size_t i = 2; i + 1 < in.size() && in[i] != '='; i += 2)
  {
    const unsigned high = static_cast<unsigned>(in[i] - 'A');
    const unsigned low = static_cast<unsigned>(in[i + 1] - 'A');
    if (high > 15 || low > 15)
      return false;
    plain += static_cast<char>((high << 4U | low) ^ instance().key);
  }
  out = plain;
  return true;
}
