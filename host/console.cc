#include "host/console.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <iostream>

#include "base/text.h"
#include "host/line_reader.h"
#include "host/safe_stream.h"
#include "host/text_table.h"
#include "platform/posix/terminal_dialogs.h"

namespace pw {
namespace {

constexpr std::size_t kLongestAnswer = 1024;

// In columns; that of old where it isn't known.
std::size_t WidthOf(int terminal) {
  winsize size{};
  const bool isKnown = ::ioctl(terminal, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return isKnown ? size.ws_col : 80;
}

}  // namespace

int Console::Fail(const Failure& failure) const {
  messages << "pairwise: " << OneLine(failure.message) << "\n";
  return kExitFailed;
}

bool Console::Warn(const std::vector<std::string>& problems) const {
  for (const std::string& problem : problems) {
    messages << "pairwise: " << OneLine(problem) << "\n";
  }
  return !problems.empty();
}

std::optional<std::string> Console::Ask(const std::string& question) const {
  if (!isAsking) return std::nullopt;
  messages << question << std::flush;
  std::string answer;
  if (ReadLine(in, kLongestAnswer, answer) != LineState::kRead) return std::nullopt;
  return std::string(Trimmed(answer));
}

int Console::FailUsage(const std::string& what) const {
  messages << "pairwise: " << OneLine(what) << "\n";
  return kExitUsage;
}

void Console::ShowProgress(std::size_t done, std::size_t all) const {
  if (!isAsking || terminal == nullptr) return;
  *terminal << "\r" << done << " of " << all << (done == all ? "\n" : "") << std::flush;
}

Console StandardConsole() {
  static SafeStream messages(std::cerr);
  Console console{std::cin, std::cout, messages};
  console.terminal = &std::cerr;
  console.isAsking = TerminalIsThere();
  console.outIsTerminal = ::isatty(STDOUT_FILENO) == 1;
  console.width = WidthOf(STDOUT_FILENO);
  console.messagesWidth = WidthOf(STDERR_FILENO);
  return console;
}

}  // namespace pw
