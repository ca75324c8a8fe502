#include "host/todo_files.h"

#include "calltask/frame_format.h"
#include "host/check/todo_check.h"
#include "platform/whole_file.h"

namespace pw {
namespace {

// Empty where nothing was found.
std::string ProblemOf(const FileCheck& check) {
  const std::string found = FindingsInOneLine(check);
  return found.empty() ? found : "damaged, so that not all of it is read: " + found;
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
