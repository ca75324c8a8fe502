#include "tests/end_to_end/process.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <regex>
#include <utility>

#include <gtest/gtest.h>

namespace pw {
namespace {

std::string ReadAll(FILE* file) {
  std::string text;
  for (int c = std::getc(file); c != EOF; c = std::getc(file)) text += static_cast<char>(c);
  return text;
}

[[noreturn]] void Become(std::vector<char*>& arguments, int in, int out, int messages, uid_t user) {
  ::dup2(in, STDIN_FILENO);
  ::dup2(out, STDOUT_FILENO);
  ::dup2(messages, STDERR_FILENO);
  // Signals that are blocked here are to reach it all the same.
  sigset_t none;
  ::sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
  if (user == 0 || (::setgid(user) == 0 && ::setuid(user) == 0)) {
    ::setenv("TZ", "UTC0", 0);
    ::execv(PAIRWISE, arguments.data());
  }
  ::_exit(127);
}

}  // namespace

Process::Process(const std::vector<std::string>& arguments, uid_t user) {
  // One that ends before it has read all is no reason for us to end.
  ::signal(SIGPIPE, SIG_IGN);
  std::array<int, 2> input{};
  std::array<int, 2> output{};
  messages = std::tmpfile();
  if (messages == nullptr || ::pipe2(input.data(), O_CLOEXEC) != 0 ||
      ::pipe2(output.data(), O_CLOEXEC) != 0) {
    std::abort();
  }
  std::vector<std::string> words = {PAIRWISE};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  id = ::fork();
  if (id == 0) Become(pointers, input[0], output[1], ::fileno(messages), user);
  ::close(input[0]);
  ::close(output[1]);
  in = ::fdopen(input[1], "w");
  out = ::fdopen(output[0], "r");
}

Process::~Process() {
  if (id > 0) {
    Signal(SIGKILL);
    WaitUnheard();
  }
  for (FILE* file : {in, out, messages}) {
    if (file != nullptr) std::fclose(file);
  }
}

void Process::Write(const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), in);
  std::fflush(in);
}

std::string Process::ReadLine() {
  std::string line;
  for (int c = std::getc(out); c != EOF && c != '\n'; c = std::getc(out)) {
    line += static_cast<char>(c);
  }
  return line;
}

void Process::Signal(int signal) const {
  ::kill(id, signal);
}

int Process::WaitUnheard() {
  int status = 0;
  ::waitpid(id, &status, 0);
  id = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

Finished Process::Finish() {
  Finished finished;
  std::fclose(std::exchange(in, nullptr));
  finished.out = ReadAll(out);
  finished.code = WaitUnheard();
  std::rewind(messages);
  finished.messages = ReadAll(messages);
  return finished;
}

Finished RunPairwise(const std::vector<std::string>& arguments, const std::string& input,
                     uid_t user) {
  Process process(arguments, user);
  process.Write(input);
  return process.Finish();
}

Finished RunWithLargestFile(rlim_t bytes, const std::vector<std::string>& arguments,
                            bool isKilled) {
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  rlimit limit = before;
  limit.rlim_cur = bytes;
  const auto handler = ::signal(SIGXFSZ, isKilled ? SIG_DFL : SIG_IGN);
  ::setrlimit(RLIMIT_FSIZE, &limit);
  Process process(arguments);
  ::setrlimit(RLIMIT_FSIZE, &before);
  ::signal(SIGXFSZ, handler);
  return process.Finish();
}

testing::AssertionResult Has(const std::string& text, const std::string& part) {
  if (text.find(part) != std::string::npos) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "no \"" << part << "\" in\n" << text;
}

std::string WithoutBackupLines(const std::string& messages) {
  return std::regex_replace(
      messages, std::regex("pairwise: the files as they were are in backup [-0-9T]*\n"), "");
}

std::string OutputOf(const std::string& command) {
  std::string output;
  FILE* pipe = popen((command + " 2>&1").c_str(), "r");
  char bytes[256];
  while (pipe != nullptr && std::fgets(bytes, sizeof bytes, pipe) != nullptr) output += bytes;
  if (pipe == nullptr || pclose(pipe) != 0) ADD_FAILURE() << command << "\n" << output;
  return output;
}

}  // namespace pw
