// Takes a unit of a semaphore and gives it back.
#include <CriticalSection.h>

#include "SemaphoreContent.h"

CriticalSection::CriticalSection(Semaphore& taken) : semaphore(taken)
{
  semaphore.content->take();
}

CriticalSection::~CriticalSection()
{
  semaphore.content->giveBack();
}
