#include "host/check/todo_check.h"

#include <cstdint>
#include <map>
#include <string>

#include "calltask/block_reader.h"
#include "calltask/call_format.h"
#include "calltask/frame_format.h"
#include "calltask/task_format.h"
#include "host/counted.h"

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

struct Kind {
  const char* one;
  const char* many;
  calltask::Magics magics;
  bool (*take)(std::string_view& block, FormatVersion version);
};
constexpr Kind kTasks = {"task", "tasks", calltask::kTaskMagics, TakeTask};
constexpr Kind kCalls = {"call", "calls", calltask::kCallMagics, TakeCall};

class TodoCheck {
 public:
  TodoCheck(std::string_view bytes, const Kind& kind)
      : bytes(bytes), kind(kind), reader(bytes.size()) {}

  TodoFileCheck Run() {
    check.holds = std::string("no ") + kind.many;
    if (bytes.empty()) return check;
    const calltask::Frame frame = calltask::ReadFrame(bytes);
    const auto version = calltask::VersionOf(frame.header, kind.magics);
    check.isVersion50 = version == FormatVersion::k50;
    if (!frame.isWhole && frame.cutTables.empty()) {
      check.Add(bytes.size(), "a header and the table of years, 626 bytes, were expected");
      return check;
    }
    if (!version) {
      check.Add(0, "\"" + std::string(kind.magics.version50) + "\" or \"" +
                       std::string(kind.magics.version30) +
                       "\" was expected here; the records may be wrong");
    }
    for (const std::size_t table : frame.cutTables) {
      check.Add(table, "the table of a year was expected here");
    }
    for (const std::size_t entry : frame.blocksOutside) {
      check.Add(entry, "a day that lies within the file was expected here");
    }
    for (const calltask::DayBlock& day : frame.days) {
      CheckDay(day, version.value_or(FormatVersion::k30));
    }
    check.records = records;
    check.holds = Counted(records, kind.one, kind.many) + " of version " +
                  std::to_string(static_cast<int>(version.value_or(FormatVersion::k30)));
    return check;
  }

 private:
  // How many records end in a block: each does so with the byte of an empty slot. One that doesn't
  // end counts too.
  static std::size_t RecordsIn(std::string_view block) {
    std::size_t count = block.back() == calltask::kEmptySlot ? 0 : 1;
    for (std::size_t at = 1; at < block.size(); ++at) {
      const bool ends = block[at] == calltask::kEmptySlot && block[at - 1] != calltask::kEmptySlot;
      count += ends ? 1 : 0;
    }
    return count;
  }

  // Of two blocks under one day only the later one is read.
  void Keep(std::uint16_t key, std::size_t at, std::size_t found) {
    const auto [known, isNew] = kept.try_emplace(key, found);
    if (isNew) return;
    check.Add(at, "this block stands under the same day as an earlier one, which it replaces",
              known->second);
    records -= known->second;
    known->second = found;
  }

  void CheckDay(const calltask::DayBlock& day, FormatVersion version) {
    std::size_t found = 0;
    std::size_t at = 0;
    const bool isRead = reader.Read(day.bytes, [&](std::string_view& rest) {
      at = static_cast<std::size_t>(rest.data() - bytes.data());
      ++found;
      return kind.take(rest, version);
    });
    if (isRead) {
      records += found;
      Keep(day.key, static_cast<std::size_t>(day.bytes.data() - bytes.data()), found);
    } else {
      check.Add(at, std::string("a whole ") + kind.one + " was expected here; its day is left out",
                RecordsIn(day.bytes));
    }
  }

  std::string_view bytes;
  const Kind& kind;
  calltask::BlockReader reader;
  std::size_t records = 0;
  std::map<std::uint16_t, std::size_t> kept;
  TodoFileCheck check;
};

}  // namespace

TodoFileCheck CheckTasks(std::string_view bytes) {
  return TodoCheck(bytes, kTasks).Run();
}

TodoFileCheck CheckCalls(std::string_view bytes) {
  return TodoCheck(bytes, kCalls).Run();
}

}  // namespace pw
