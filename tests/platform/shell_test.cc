#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include <gtest/gtest.h>

#include "platform/posix/posix_shell.h"
#include "tests/platform/temp_folder.h"

namespace pw {
namespace {

class PosixShellTest : public testing::Test {
 protected:
  PosixShellTest() {
    PutProgram("Program", "/bin/sh\n{ pwd; printf '%s\\n' \"$@\"; } > \"${0%/*}/answer\"");
    PutProgram("lost", "/no/such/interpreter");
    PutProgram("calm", "/bin/sh");
    folder.Put("bin/text", "no program\n");
    std::filesystem::create_directory(folder.Path() / "run");
  }
  void PutProgram(const std::string& name, const std::string& script) const {
    folder.Put("bin/" + name, "#!" + script + "\n");
    chmod((folder.Path() / "bin" / name).c_str(), 0700);
  }

  TempFolder folder;
  PathTable table{{{"C:", folder.Path()}}, folder.Path()};
  PosixShell shell{table, 0x0001'0002'0003'0004U};
};

// The program answers through a pipe, whose end is read once it has come.
TEST_F(PosixShellTest, StartsAProgramOfItsOwn) {
  ASSERT_EQ(mkfifo((folder.Path() / "bin/answer").c_str(), 0600), 0);
  ASSERT_TRUE(shell.Execute(
      {"open", "c:\\BIN\\program", "-x  \"two words\" a\"b\"c \"\" \xE4", "C:\\Run", 1}));
  EXPECT_EQ(folder.Get("bin/answer"), std::filesystem::canonical(folder.Path() / "run").native() +
                                          "\n-x\ntwo words\nabc\n\n\xC3\xA4\n");
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST_F(PosixShellTest, TellsWhatCannotBeStarted) {
  const ShellCommand cases[] = {
      {"print", "C:\\bin\\Program", "", "", 1},       {"open", "C:\\bin\\none", "", "", 1},
      {"open", "C:\\bin\\text", "", "", 1},           {"open", "C:\\bin", "", "", 1},
      {"open", "Q:\\bin\\Program", "", "", 1},        {"open", "C:\\bin\\lost", "", "", 1},
      {"open", "C:\\bin\\Program", "", "C:\\none", 1}};
  for (const ShellCommand& command : cases) {
    EXPECT_FALSE(shell.Execute(command)) << command.verb << " " << command.file;
  }
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(shell.ModuleVersion(), 0x0001'0002'0003'0004U);
}

// As where a service was started without its standard files.
TEST_F(PosixShellTest, TellsSoWithoutStandardFilesToo) {
  const pid_t child = fork();
  if (child == 0) {
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) close(standard);
    const bool lost = shell.Execute({"open", "C:\\bin\\lost", "", "", 1});
    const bool calm = shell.Execute({"open", "C:\\bin\\calm", "", "", 1});
    _exit((lost ? 1 : 0) + (calm ? 0 : 2));
  }
  int status = -1;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace pw
