// The command that makes the platform fail.
#include "CommandFunctions.h"
#include "FaultWords.h"
#include "StartReport.h"
#include "base/Shown.h"

namespace cli
{
namespace
{

void printFaults(Session& session)
{
  const auto faults = host::faults();
  session.out << (faults.empty() ? "no fault is set\n" : "");
  for (const host::Fault& fault : faults)
    session.out << session.style.notable("fault") << " " << describeFault(fault) << "\n";
}

/// Whoever found a service keeps it, so a service that is absent can be met by a manager that is new alone.
Outcome startWithoutIt(Session& session)
{
  session.remarks << "  a manager remembers what it found, so the service starts with a new one\n";
  try
  {
    const StartSummary summary = session.running.startAnew();
    session.forgetRefusals();
    printStart(session, summary, "started anew");
    return Outcome::done;
  }
  catch (const StartError& error)
  {
    session.quit = true; // There is nobody left to take commands.
    return session.refuse(shown(error.what()));
  }
}

} // namespace

Outcome demandFault(Session& session, const Arguments& arguments)
{
  if (arguments.empty())
  {
    printFaults(session);
    return Outcome::done;
  }
  if (arguments.front() == "off")
  {
    if (arguments.size() > 1)
      return session.refuse("`fault off` ends all faults and takes no more words");
    host::endFaults();
    session.out << "no fault is set\n";
    return Outcome::done;
  }
  try
  {
    const host::Fault fault = readFault(arguments);
    host::setFault(fault);
    printFaults(session);
    return fault.kind == host::FaultKind::absent ? startWithoutIt(session) : Outcome::done;
  }
  catch (const FaultWordsError& error)
  {
    return session.refuse(error.what());
  }
}

} // namespace cli
