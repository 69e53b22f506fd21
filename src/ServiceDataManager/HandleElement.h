// Keeping exceptions out of the C parser.
#pragma once

#include <exception>

#include <expat.h>

#include "ServiceDataManager.h"

/// Runs one of the element handlers. What it throws during a parse is kept for the parse's caller and stops the
/// parser, which may still report an element or two: those are ignored.
template <typename... Text>
void ServiceDataManager::handleElement(void (ServiceDataManager::*handler)(Text...), Text... text)
{
  // Whoever runs the parser holds it.
  lockIsHeld();
  sdm::DASReplyState& state = *reply;
  if (state.failure != nullptr)
    return;
  if (state.parser == nullptr)
  {
    (this->*handler)(text...);
    return;
  }
  try
  {
    (this->*handler)(text...);
  }
  catch (...)
  {
    state.failure = std::current_exception();
    XML_StopParser(state.parser->expat, XML_FALSE);
  }
}
