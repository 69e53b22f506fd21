// Lines from a terminal, by libedit. Its interface is global, and so is the little state around it here.
#include "LineReader.h"

#include "CharacterDecoder.h"
#include "Interrupts.h"

#include <editline/readline.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <poll.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace cli
{
namespace
{

constexpr int endOfInput = 4;

Interrupts* currentInterrupts = nullptr;
bool lineCancelled = false;
/// Whether everything of this line so far was there before the editor asked for it.
bool typedAhead = false;
Completer currentCompleter;
std::vector<std::string> candidates;

/// A terminal throws away what it has not shown yet when an interrupt is typed; the new prompt would be part of
/// that. The editor takes the terminal over anew for every line, so this is looked at for every character.
void keepOutputAtInterrupts()
{
  termios mode{};
  if (::tcgetattr(STDIN_FILENO, &mode) != 0 || (mode.c_lflag & NOFLSH) != 0)
    return;
  mode.c_lflag |= NOFLSH;
  ::tcsetattr(STDIN_FILENO, TCSANOW, &mode);
}

bool isInputThere()
{
  pollfd input = {STDIN_FILENO, POLLIN, 0};
  return ::poll(&input, 1, 0) > 0;
}

/// An interrupt reads as the end of a line that `next` then throws away.
int readByte()
{
  keepOutputAtInterrupts();
  typedAhead = typedAhead && isInputThere();
  if (!currentInterrupts->waitForInput())
  {
    lineCancelled = true;
    return '\n';
  }
  char byte = 0;
  if (::read(STDIN_FILENO, &byte, 1) <= 0)
    return -1;
  // So reads a Ctrl-D that was typed when the terminal was not the editor's yet; later it is Ctrl-Space.
  if (byte == '\0' && typedAhead)
    return endOfInput;
  return static_cast<unsigned char>(byte);
}

/// One character from the terminal: the editor works with characters, not bytes.
int readCharacter(FILE*)
{
  static CharacterDecoder decoder;
  return decoder.next(readByte);
}

/// Hands out the candidates one by one; the editor frees them.
char* nextCandidate(const char*, int state)
{
  static std::size_t place = 0;
  if (state == 0)
    place = 0;
  return place < candidates.size() ? ::strdup(candidates[place++].c_str()) : nullptr;
}

char** complete(const char* word, int, int end)
{
  // Without this the editor offers the files of the working folder when there is no candidate.
  rl_attempted_completion_over = 1;
  const std::string line = std::string(rl_line_buffer).substr(0, static_cast<std::size_t>(end));
  candidates = currentCompleter(line);
  return candidates.empty() ? nullptr : rl_completion_matches(word, nextCandidate);
}

/// Turns the echo off and on again.
class NoEcho
{
public:
  NoEcho()
  {
    known = ::tcgetattr(STDIN_FILENO, &before) == 0;
    termios hidden = before;
    hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    hidden.c_lflag |= ICANON | ECHONL;
    if (known)
      ::tcsetattr(STDIN_FILENO, TCSADRAIN, &hidden);
  }
  ~NoEcho()
  {
    if (known)
      ::tcsetattr(STDIN_FILENO, TCSADRAIN, &before);
  }
  NoEcho(const NoEcho&) = delete;
  NoEcho& operator=(const NoEcho&) = delete;

private:
  termios before{};
  bool known = false;
};

class TerminalReader : public LineReader
{
public:
  TerminalReader(std::string itsPrompt, Completer completer, Interrupts& interrupts) : prompt(std::move(itsPrompt))
  {
    currentCompleter = std::move(completer);
    currentInterrupts = &interrupts;
    rl_readline_name = programName.data();
    rl_getc_function = readCharacter;
    rl_attempted_completion_function = complete;
    rl_completer_word_break_characters = blanks.data();
    rl_initialize();
    using_history();
  }

  bool next(std::string& line) override
  {
    // Before the prompt is there to be answered.
    currentInterrupts->awaitCommand();
    std::cout.flush();
    for (;;)
    {
      lineCancelled = false;
      typedAhead = true;
      char* typed = readline(prompt.c_str());
      if (typed == nullptr)
      {
        std::cout << "\n";
        return false;
      }
      line = typed;
      std::free(typed);
      if (!lineCancelled)
        return true;
    }
  }

  void keep(const std::string& line) override
  {
    if (line != last)
      add_history(line.c_str());
    last = line;
  }

  bool askHidden(const std::string& question, std::string& answer) override
  {
    // The echo goes first: who types quickly answers as soon as the question stands there.
    const NoEcho noEcho;
    std::cout << question << std::flush;
    answer.clear();
    for (char byte = 0; currentInterrupts->waitForInput() && ::read(STDIN_FILENO, &byte, 1) == 1;)
    {
      if (byte == '\n')
        return true;
      answer += byte;
    }
    std::cout << "\n";
    return false;
  }

private:
  std::string prompt;
  std::string last;
  std::array<char, 4> programName = {'s', 'd', 'm', '\0'};
  std::array<char, 3> blanks = {' ', '\t', '\0'};
};

} // namespace

std::unique_ptr<LineReader> makeTerminalReader(const std::string& prompt, Completer completer, Interrupts& interrupts)
{
  return std::make_unique<TerminalReader>(prompt, std::move(completer), interrupts);
}

} // namespace cli
