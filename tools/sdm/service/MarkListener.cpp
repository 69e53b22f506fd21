// Each thread has a stack of marks.
#include "MarkListener.h"

#include <memory>

#include "host/Marks.h"

namespace cli
{
namespace
{

using host::Mark;
using host::MarkKind;

/// A mark of a call that has not ended.
struct OpenMark
{
  Mark mark;
  OpenMark* outer;
};

/// Of this thread. A plain pointer, since the destructor of a static device makes calls when objects of the thread are
/// gone already.
thread_local OpenMark* innermost = nullptr;

void begin(MarkKind kind, const std::string& name)
{
  innermost = new OpenMark{{kind, name}, innermost};
}

void end()
{
  const std::unique_ptr<OpenMark> ended(innermost);
  innermost = ended->outer;
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
