// The base of everything that the framework runs: it can be started and has a home in the framework's library.
#pragma once

class Executable
{
public:
  virtual ~Executable();
  virtual void execute();

private:
  int state = 0;
};
