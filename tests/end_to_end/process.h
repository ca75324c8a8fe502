#pragma once

#include <sys/resource.h>
#include <sys/types.h>

#include <cstdio>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace pw {

struct Finished {
  int code = -1;  // of the exit; 128 and the signal's number where one ended it
  std::string out;
  std::string messages;
};

// `pairwise` as a process of its own, with its standard streams in our hands.
class Process {
 public:
  // `user` other than 0 runs it as that user, where this process may.
  explicit Process(const std::vector<std::string>& arguments, uid_t user = 0);
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  void Write(const std::string& text);

  // Blocks until there is a line; without its end. Empty at the end of the output.
  std::string ReadLine();

  void Signal(int signal) const;

  // Waits for it to end, however much it has still to say. Gives the code, as `Finish` does.
  int WaitUnheard();

  // Closes its input, and gives what it has written that was not read yet.
  Finished Finish();

 private:
  pid_t id = -1;
  FILE* in = nullptr;
  FILE* out = nullptr;
  FILE* messages = nullptr;  // a file, so that the process never waits for us to read it
};

// Runs it to its end.
Finished RunPairwise(const std::vector<std::string>& arguments, const std::string& input = "",
                     uid_t user = 0);

// The same where no file may become larger than so many bytes: a write beyond fails, or where
// `isKilled` ends the process there.
Finished RunWithLargestFile(rlim_t bytes, const std::vector<std::string>& arguments,
                            bool isKilled = false);

// Whether a part stands in a text.
testing::AssertionResult Has(const std::string& text, const std::string& part);

// What a run said, but for the line that names its backup.
std::string WithoutBackupLines(const std::string& messages);

// What a command of the shell writes; a failure unless it ends well.
std::string OutputOf(const std::string& command);

}  // namespace pw
