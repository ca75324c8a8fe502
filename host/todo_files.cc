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

constexpr FileKind kKinds[] = {
    {"TASK.WMW", calltask::kTaskMagics, TakeTask},
    {"CALL.WMW", calltask::kCallMagics, TakeCall},
};

// Nothing for a file that can't be opened.
std::optional<std::string> BytesOf(const std::string& path) {
  const auto file = CurrentPlatform().files->Open(path, OpenMode::kRead, Sharing::kReadWrite);
  const auto size = file == nullptr ? std::nullopt : file->Size();
  if (!size || *size > UINT32_MAX) return std::nullopt;
  return file->Read(static_cast<std::size_t>(*size));
}

// Empty if all of it can be read.
std::string ProblemOf(const std::string& path, const FileKind& kind) {
  const auto bytes = BytesOf(path);
  if (!bytes) return "can't be read";
  if (bytes->empty()) return {};
  const calltask::Frame frame = calltask::ReadFrame(*bytes);
  if (!frame.isWhole) return "cut short or damaged; what lies behind that is left out";
  const auto version = calltask::VersionOf(frame.header, kind.magics);
  if (!version) return "doesn't begin as such a file does; its records may be wrong";
  calltask::BlockReader reader(bytes->size());
  std::size_t unreadable = frame.blocksOutside;
  for (const calltask::DayBlock& day : frame.days) {
    const bool isRead =
        reader.Read(day.bytes, [&](std::string_view& rest) { return kind.take(rest, *version); });
    if (!isRead) ++unreadable;
  }
  if (unreadable == 0) return {};
  return std::to_string(unreadable) + (unreadable == 1 ? " day can't be read and is left out"
                                                       : " days can't be read and are left out");
}

}  // namespace

std::vector<std::string> TodoFileProblems(EngineRun& run, const std::string& prefix) {
  std::vector<std::string> problems;
  for (const FileKind& kind : kKinds) {
    const std::string path = prefix + kind.name;
    const std::string problem = ProblemOf(path, kind);
    if (!problem.empty()) problems.push_back(run.NativePathOf(path) + ": " + problem);
  }
  return problems;
}

}  // namespace pw
