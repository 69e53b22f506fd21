// Takes a unit of a semaphore and gives it back.
#include <CriticalSection.h>

#include "SemaphoreContent.h"

CriticalSection::CriticalSection(Semaphore& itsSemaphore) : semaphore(itsSemaphore)
{
  semaphore.content->take();
}

CriticalSection::~CriticalSection()
{
  semaphore.content->giveBack();
}
