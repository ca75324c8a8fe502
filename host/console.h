#pragma once

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "host/outcome.h"

namespace pw {

// Exit codes of the program.
enum ExitCode : int {
  kExitDone = 0,
  kExitFailed = 1,
  kExitUsage = 2,
  kExitSomeSkipped = 4,  // done but for what was told: records left out, or damage that was found
};

// What a command reads and writes. The streams aren't owned.
struct Console {
  std::istream& in;
  std::ostream& out;       // data
  std::ostream& messages;  // everything else; of the standard streams without control characters
  bool outIsTerminal = false;
  std::size_t width = 80;          // of the data's terminal, in columns
  std::size_t messagesWidth = 80;  // of that of the messages
  bool isAsking = false;           // somebody is there to answer, at a terminal

  // Takes what is meant to steer the terminal. Null where there is none.
  std::ostream* terminal = nullptr;

  // Tells what went wrong, in one line, and gives the exit code for it.
  int Fail(const Failure& failure) const;

  // Tells each of what was found wrong on the way, a line each. Whether there was anything.
  bool Warn(const std::vector<std::string>& problems) const;

  // Asks, and gives the line that is answered, without blanks around it; nothing where nobody is
  // there, or the input ends.
  std::optional<std::string> Ask(const std::string& question) const;

  // Shows somebody who is there how much is done, in place of what was shown before.
  void ShowProgress(std::size_t done, std::size_t all) const;

  // Tells what went wrong with the way in which the program was called.
  int FailUsage(const std::string& what) const;
};

// The standard streams.
Console StandardConsole();

}  // namespace pw
