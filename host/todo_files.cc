#include "host/todo_files.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "calltask/block_reader.h"
#include "calltask/call_format.h"
#include "calltask/task_format.h"
#include "platform/platform.h"

namespace pw {
namespace {

using calltask::FormatVersion;

bool TakeCall(std::string_view& block, FormatVersion version) {
  calltask::RecordFields call;
  calltask::Date due;
  return calltask::TakeCall(block, version, call, due);
}

bool TakeTask(std::string_view& block, FormatVersion version) {
  calltask::RecordFields task;
  calltask::TaskWords words;
  return calltask::TakeTask(block, version, task, words);
}

struct FileKind {
  const char* name;
  calltask::Magics magics;
  bool (*take)(std::string_view& block, FormatVersion version);
};

constexpr FileKind kTasks = {"TASK.WMW", calltask::kTaskMagics, TakeTask};
constexpr FileKind kCalls = {"CALL.WMW", calltask::kCallMagics, TakeCall};

// Nothing for a file that the module doesn't read either.
std::optional<std::string> BytesOf(const std::string& path) {
  const auto file = CurrentPlatform().files->Open(path, OpenMode::kRead, Sharing::kReadWrite);
  const auto size = file == nullptr ? std::nullopt : file->Size();
  if (!size || *size > calltask::kLargestFile) return std::nullopt;
  std::string bytes = file->Read(static_cast<std::size_t>(*size));
  if (bytes.empty() && *size != 0) return std::nullopt;
  return bytes;
}

std::size_t UnreadableDays(const calltask::Frame& frame, std::size_t fileSize, const FileKind& kind,
                           FormatVersion version) {
  calltask::BlockReader reader(fileSize);
  std::size_t unreadable = frame.blocksOutside;
  for (const calltask::DayBlock& day : frame.days) {
    const bool isRead =
        reader.Read(day.bytes, [&](std::string_view& rest) { return kind.take(rest, version); });
    if (!isRead) ++unreadable;
  }
  return unreadable;
}

struct Finding {
  std::string problem;  // empty if all of it can be read
  bool isVersion50 = false;
};

Finding LookAt(const std::string& path, const FileKind& kind) {
  const auto bytes = BytesOf(path);
  if (!bytes) return {"can't be read, or is far too large", false};
  if (bytes->empty()) return {};
  const calltask::Frame frame = calltask::ReadFrame(*bytes);
  const auto version = calltask::VersionOf(frame.header, kind.magics);
  const bool isVersion50 = version == FormatVersion::k50;
  if (!frame.isWhole) {
    return {"cut short or damaged; what lies behind that is left out", isVersion50};
  }
  if (!version) return {"doesn't begin as such a file does; its records may be wrong", false};
  const std::size_t unreadable = UnreadableDays(frame, bytes->size(), kind, *version);
  if (unreadable == 0) return {"", isVersion50};
  const char* words = unreadable == 1 ? " day can't be read and is left out"
                                      : " days can't be read and are left out";
  return {std::to_string(unreadable) + words, isVersion50};
}

}  // namespace

TodoFiles LookAtTodoFiles(EngineRun& run, const std::string& prefix) {
  TodoFiles files;
  const auto look = [&](const FileKind& kind) {
    const std::string path = prefix + kind.name;
    const Finding found = LookAt(path, kind);
    if (!found.problem.empty()) {
      files.problems.push_back(run.NativePathOf(path) + ": " + found.problem);
    }
    return found.isVersion50;
  };
  const bool areTasks50 = look(kTasks);
  files.callsTellChange = look(kCalls);
  files.tasksTellChange = areTasks50 && files.callsTellChange;
  return files;
}

}  // namespace pw
