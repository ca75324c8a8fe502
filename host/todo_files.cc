#include "host/todo_files.h"

#include "calltask/frame_format.h"
#include "host/check/todo_check.h"
#include "host/counted.h"
#include "platform/whole_file.h"

namespace pw {
namespace {

// A line for all that was found; empty where that is nothing.
std::string ProblemOf(const FileCheck& check) {
  if (check.findings.empty()) return {};
  const Finding& first = check.findings.front();
  std::string text = "damaged, so that not all of it is read: ";
  if (first.offset) text += "at " + std::to_string(*first.offset) + " ";
  text += first.text;
  if (check.findings.size() > 1) {
    text += ", and " + Counted(check.findings.size() - 1, "finding", "findings") +
            " more; see `pairwise check`";
  }
  return text;
}

// Whether the file is of version 50.
bool LookAt(EngineRun& run, const std::string& path, TodoFileCheck (*check)(std::string_view),
            TodoFiles& files) {
  const auto bytes = ReadWholeFile(path, calltask::kLargestFile);
  const TodoFileCheck found = bytes ? check(*bytes) : TodoFileCheck();
  const std::string problem = bytes ? ProblemOf(found) : "can't be read, or is far too large";
  if (!problem.empty()) files.problems.push_back(run.NativePathOf(path) + ": " + problem);
  return found.isVersion50;
}

}  // namespace

TodoFiles LookAtTodoFiles(EngineRun& run, const std::string& prefix) {
  TodoFiles files;
  const bool areTasks50 = LookAt(run, prefix + "TASK.WMW", CheckTasks, files);
  files.callsTellChange = LookAt(run, prefix + "CALL.WMW", CheckCalls, files);
  files.tasksTellChange = areTasks50 && files.callsTellChange;
  return files;
}

}  // namespace pw
