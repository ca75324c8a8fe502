#include "host/console.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <iostream>

namespace pw {

int Console::Fail(const Failure& failure) const {
  messages << "pairwise: " << failure.message << "\n";
  return kExitFailed;
}

bool Console::Warn(const std::vector<std::string>& problems) const {
  for (const std::string& problem : problems) messages << "pairwise: " << problem << "\n";
  return !problems.empty();
}

int Console::FailUsage(const std::string& what) const {
  messages << "pairwise: " << what << "\n";
  return kExitUsage;
}

Console StandardConsole() {
  Console console{std::cin, std::cout, std::cerr};
  winsize size{};
  console.outIsTerminal = ::isatty(STDOUT_FILENO) == 1;
  if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
    console.width = size.ws_col;
  }
  return console;
}

}  // namespace pw
