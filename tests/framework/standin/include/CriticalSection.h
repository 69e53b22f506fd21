// The scoped hold: all of it inline.
#pragma once

#include "Semaphore.h"

class CriticalSection
{
public:
  explicit CriticalSection(Semaphore& taken) : held(&taken)
  {
    held->take();
  }
  ~CriticalSection()
  {
    held->give();
  }

private:
  CriticalSection(const CriticalSection&);
  CriticalSection& operator=(const CriticalSection&);
  Semaphore* held;
};
