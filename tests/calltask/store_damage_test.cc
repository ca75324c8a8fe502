#include <gtest/gtest.h>

#include "platform/testing/test_platform.h"
#include "tests/support/calltask_files.h"
#include "tests/support/damage.h"

// Damaged files: whatever stands in them, they load or fail, change and save as a whole file.
namespace {

using pw::test::CallTaskBytes;
using pw::test::FileKind;
using pw::test::kFileKinds;
using pw::test::kPrefix;

class CallTaskDamageTest : public testing::TestWithParam<FileKind> {
 protected:
  // Loads, looks at every record, changes and removes, saves and loads what was saved. The number
  // of records, -1 where nothing could be loaded.
  std::int64_t Exercise(const std::string& bytes) {
    const FileKind& kind = GetParam();
    platform.files.Put(kind.Path(), bytes);
    auto store = kind.NewStore();
    const std::int32_t result = store->Load(kPrefix);
    const std::uint32_t count = store->Count();
    if (result != 0 && count == 0) return -1;
    for (std::uint32_t i = 0; i < count; ++i) {
      const auto found = store->Find(store->IdText(i));
      EXPECT_TRUE(found && *found <= i);
      store->Record(i).DueDate();
    }
    if (count == 0) return 0;
    store->Change(0, [](pw::DayRecord& record) {
      record.SetTexts("changed", "changed");
      record.SetCompleted(true);
    });
    if (count > 1) store->Remove(1);
    store->Save(kPrefix);
    pw::test::CheckFrame(*platform.files.Get(kind.Path()), true);
    EXPECT_EQ(kind.NewStore()->Load(kPrefix), 0);
    return count;
  }

  // Two years, three days.
  CallTaskBytes Sample() const {
    const FileKind& kind = GetParam();
    CallTaskBytes file = kind.File();
    file.days = {{1992, 365, {kind.Record(1, "one", "note"), kind.Record(2, "two", "note")}},
                 {1993, 0, {kind.Record(3, "three", "note")}},
                 {1993, 364, {kind.Record(4, "four", "note")}}};
    return file;
  }

  // The frame is the same for all, so that one kind's is enough; of the others only the records.
  static std::size_t First() { return GetParam().isCall && GetParam().is50 ? 0 : kFirstBlock; }

  static constexpr std::size_t kFirstBlock = 626 + 6222;
  pw::TestPlatform platform;
};

TEST_P(CallTaskDamageTest, CutAtEveryLength) {
  const CallTaskBytes sample = Sample();
  const std::string whole = sample.Build();
  // Where each year ends. A day counts once it is there whole, a year once its table is.
  const std::size_t firstDay = kFirstBlock + sample.days[0].Block().size();
  const std::size_t secondDay = firstDay + 6222 + sample.days[1].Block().size();
  const auto use = [&](const std::string& cut) {
    std::int64_t expected = cut.empty() ? 0 : -1;
    if (cut.size() >= firstDay) expected = 2;
    if (cut.size() >= secondDay) expected = 3;
    EXPECT_EQ(Exercise(cut), expected);
  };
  pw::test::ForEachCut(whole, use, First());
}

TEST_P(CallTaskDamageTest, EveryByteFlipped) {
  CallTaskBytes sample = Sample();
  sample.days.pop_back();
  sample.days.pop_back();
  const std::string whole = sample.Build();
  const auto use = [&](const std::string& damaged, std::size_t at) {
    // Most of a table is alike.
    const bool isInTable = at >= 626 && at < kFirstBlock;
    if (!isInTable || whole[at] != '\0' || damaged[at] == '\xFF') Exercise(damaged);
  };
  pw::test::ForEachFlip(whole, use, First());
}

INSTANTIATE_TEST_SUITE_P(BothFiles, CallTaskDamageTest, testing::ValuesIn(kFileKinds),
                         [](const auto& info) { return info.param.Magic(); });

}  // namespace
