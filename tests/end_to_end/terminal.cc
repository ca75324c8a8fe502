#include "tests/end_to_end/terminal.h"

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include "platform/posix/descriptor.h"

namespace pw {

Finished RunAtTerminal(const std::vector<std::string>& arguments, const std::string& typed) {
  std::vector<std::string> words = {PAIRWISE};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  winsize size{};
  size.ws_col = 80;
  size.ws_row = 24;
  int number = -1;
  const pid_t id = ::forkpty(&number, nullptr, nullptr, &size);
  if (id < 0) std::abort();
  if (id == 0) {
    ::execv(PAIRWISE, pointers.data());
    ::_exit(127);
  }
  const Descriptor terminal(number);
  Finished finished;
  // What the program hasn't read yet waits in the terminal. Its end is typed as Ctrl-D.
  const std::string all = typed + "\x04";
  if (::write(number, all.data(), all.size()) != static_cast<ssize_t>(all.size())) std::abort();
  char bytes[1024];
  for (ssize_t got = 0; (got = ::read(number, bytes, sizeof bytes)) > 0 || errno == EINTR;) {
    if (got > 0) finished.out.append(bytes, static_cast<std::size_t>(got));
  }
  finished.out.erase(std::remove(finished.out.begin(), finished.out.end(), '\r'),
                     finished.out.end());
  int status = 0;
  ::waitpid(id, &status, 0);
  finished.code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return finished;
}

}  // namespace pw
