#include <csignal>

#include "host/commands/commands.h"

int main(int argc, char** argv) {
  // A reader that has gone shows as a failed write, so that what is temporary is still removed.
  std::signal(SIGPIPE, SIG_IGN);
  return pw::RunCommandLine(argc, argv, pw::StandardConsole());
}
