// A stack of marks a thread.
#include "MarkListener.h"

#include <memory>
#include <vector>

#include "host/Marks.h"

namespace cli
{
namespace
{

using host::Mark;
using host::MarkKind;

/// Of this thread, the innermost last.
std::vector<std::unique_ptr<Mark>>& marks()
{
  static thread_local std::vector<std::unique_ptr<Mark>> own;
  return own;
}

void begin(MarkKind kind, const std::string& name)
{
  marks().push_back(std::make_unique<Mark>(kind, name));
}

void end()
{
  marks().pop_back();
}

} // namespace

void MarkListener::operationBegins(const OperationCall& call)
{
  begin(MarkKind::operation, call.name);
}

void MarkListener::operationEnded(const OperationCall& /*call*/, const OperationAnswer& /*answer*/)
{
  end();
}

void MarkListener::setterBegins(const SetterCall& call)
{
  begin(MarkKind::callback, call.setter);
}

void MarkListener::setterEnded(const SetterCall& /*call*/)
{
  end();
}

void MarkListener::getterBegins(const GetterCall& call)
{
  begin(MarkKind::callback, call.getter);
}

void MarkListener::getterEnded(const GetterCall& /*call*/)
{
  end();
}

void MarkListener::validatorBegins(const ValidatorCall& call)
{
  begin(MarkKind::callback, "validator " + call.group);
}

void MarkListener::validatorEnded(const ValidatorCall& /*call*/)
{
  end();
}

} // namespace cli
