#include "platform/posix/posix_shell.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include "base/codepage.h"
#include "base/text.h"
#include "platform/posix/descriptor.h"

namespace pw {
namespace {

// All that the child needs, laid out before it exists: between fork and exec it may not allocate.
struct Start {
  std::string program;
  std::string folder;  // empty: where this process is
  std::vector<char*> arguments;
};

std::vector<std::string> SplitParameters(std::string_view parameters) {
  std::vector<std::string> split;
  bool quoted = false;
  bool inParameter = false;
  for (const char c : parameters) {
    if (c == '"') {
      quoted = !quoted;
    } else if (!quoted && (c == ' ' || c == '\t')) {
      inParameter = false;
      continue;
    }
    if (!inParameter) split.emplace_back();
    inParameter = true;
    if (c != '"') split.back().push_back(c);
  }
  return split;
}

bool IsFolder(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool IsProgram(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         access(path.c_str(), X_OK) == 0;
}

void TakeNoTerminal() {
  const int nothing = open("/dev/null", O_RDWR);
  if (nothing < 0) return;
  for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nothing, standard);
  if (nothing > STDERR_FILENO) close(nothing);
}

void RestoreSignals() {
  struct sigaction byDefault {};
  byDefault.sa_handler = SIG_DFL;
  sigaction(SIGPIPE, &byDefault, nullptr);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
}

// The program's own process: becomes it, or tells through the pipe that it couldn't.
[[noreturn]] void Become(const Start& start, int failurePipe) {
  RestoreSignals();
  if (start.folder.empty() || chdir(start.folder.c_str()) == 0) {
    TakeNoTerminal();
    execv(start.program.c_str(), start.arguments.data());
  }
  const char failed = 1;
  [[maybe_unused]] const ssize_t told = write(failurePipe, &failed, 1);
  _exit(1);
}

// Between this process and the program stands a child that ends at once, so that the program is
// nobody's child and leaves no zombie behind.
bool StartDetached(const Start& start) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return false;
  const Descriptor reading(ends[0]);
  // Not in a standard place, should one of these be free: the program's process fills them.
  Descriptor writing(fcntl(ends[1], F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  close(ends[1]);
  if (!writing.IsOpen()) return false;
  const pid_t child = fork();
  if (child == 0) {
    setsid();
    const pid_t program = fork();
    if (program == 0) Become(start, writing.Number());
    _exit(program < 0 ? 1 : 0);
  }
  writing.Close();
  if (child < 0) return false;
  int status = 0;
  const pid_t ended = Uninterrupted([&] { return waitpid(child, &status, 0); });
  // Exec closes the pipe; a byte in it tells that there was none. Where somebody else has reaped
  // the child its status is unknown, and the pipe alone tells.
  char failed = 0;
  const ssize_t got = Uninterrupted([&] { return read(reading.Number(), &failed, 1); });
  return got == 0 && (ended < 0 || (WIFEXITED(status) && WEXITSTATUS(status) == 0));
}

}  // namespace

bool PosixShell::Execute(const ShellCommand& command) {
  if (!EqualIgnoringCase(command.verb, "open")) return false;
  const auto program = table.Translate(command.file);
  if (!program || !IsProgram(program->path)) return false;
  Start start;
  start.program = program->path;
  // Relative paths hold for this process's folder, and the program's may be another.
  if (!command.folder.empty()) {
    const auto folder = table.Translate(command.folder);
    if (!folder || !IsFolder(folder->path)) return false;
    start.folder = folder->path;
    std::error_code failure;
    start.program = std::filesystem::absolute(start.program, failure).native();
    if (failure) return false;
  }
  std::vector<std::string> texts = {start.program};
  for (const std::string& parameter : SplitParameters(UpToZero(command.parameters))) {
    texts.push_back(CodePageToUtf8(parameter));
  }
  for (std::string& text : texts) start.arguments.push_back(text.data());
  start.arguments.push_back(nullptr);
  return StartDetached(start);
}

}  // namespace pw
