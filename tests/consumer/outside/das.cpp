// A Data Access Service of another make, over the contract's headers alone.
#include <DataAccessServiceIfc.h>

namespace
{

class SilentDas : public DataAccessServiceIfc
{
public:
  std::string sendRequest(const char*, size_t) override
  {
    return {};
  }
};

} // namespace

Executable* silentDas()
{
  static SilentDas das;
  return &das;
}
