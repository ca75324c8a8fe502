#include <set>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "base/text.h"
#include "tests/end_to_end/process.h"
#include "tests/platform/temp_folder.h"

namespace pw {
namespace {

// A calendar of so many series, one each day.
std::string Calendar(int count, const char* subject) {
  std::string text = "BEGIN:VCALENDAR\r\n";
  for (int i = 0; i < count; ++i) {
    text += Format("BEGIN:VEVENT\r\nUID:%s%d\r\nSUMMARY:%s%d\r\nDTSTART:199803%dT080000\r\n",
                   subject, i, subject, i, 10 + i);
    text += "DURATION:PT1H\r\nRRULE:FREQ=DAILY;COUNT=2\r\nEND:VEVENT\r\n";
  }
  return text + "END:VCALENDAR\r\n";
}

// A run gives series the seconds from its beginning on as their keys, which reach into the next
// run.
TEST(SeriesImport, GivesSeriesOfRunsInARowKeysOfTheirOwn) {
  const TempFolder folder;
  const std::string demo = (folder.Path() / "demo").string();
  ASSERT_EQ(RunPairwise({"demo", demo}).code, 0);
  const auto run = [&](std::vector<std::string> words) {
    words.insert(words.begin(), {"-p", demo});
    return RunPairwise(words);
  };
  ASSERT_EQ(run({"wipe", "calendar", "--yes"}).code, 0);
  for (const char* subject : {"a", "b"}) {
    folder.Put("series.ics", Calendar(20, subject));
    const Finished done = run({"import", "calendar", (folder.Path() / "series.ics").string()});
    EXPECT_EQ(done.out, "20 records added\n");
    EXPECT_EQ(WithoutBackupLines(done.messages), "");
  }
  std::set<std::string> ids;
  std::set<std::string> subjects;
  for (const auto& each : nlohmann::json::parse(run({"export", "calendar"}).out)) {
    ids.insert(each["id"].get<std::string>());
    subjects.insert(each["record"]["Subject"].get<std::string>());
  }
  EXPECT_EQ(ids.size(), 40U);
  EXPECT_EQ(subjects.size(), 40U);
}

}  // namespace
}  // namespace pw
