#include <signal.h>
#include <sys/resource.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/end_to_end/process.h"
#include "tests/end_to_end/sample.h"

namespace pw {
namespace {

using Talk = std::vector<std::pair<std::string, std::string>>;

Finished Talked(const Sample& sample, const Talk& talk) {
  std::string input;
  std::string expected;
  for (const auto& [line, answer] : talk) {
    input += line + "\n";
    expected += answer + "\n";
  }
  Finished run = sample.Run({"drive"}, input);
  EXPECT_EQ(run.out, expected);
  return run;
}

const std::string kOpen = R"({"op":"open","type":"contact","location":"C:\\Data\\Friends.WMCard"})";
const std::string kOk = R"({"result":0})";

TEST(Drive, TellsTimesInTheZoneOfTZ) {
  const Sample sample;
  const struct {
    const char* zone;
    const char* first;
    const char* changed;
  } cases[] = {
      {"UTC0", "1999-01-22T10:13:20", "1999-07-01T00:00:00"},
      {"<+0545>-5:45", "1999-01-22T15:58:20", "1999-07-01T05:45:00"},
      {"EST5EDT,M4.1.0,M10.5.0", "1999-01-22T05:13:20", "1999-06-30T20:00:00"},
  };
  for (const auto& each : cases) {
    ::setenv("TZ", each.zone, 1);
    const auto stamp = [](const std::string& time) { return R"({"stamp":")" + time + "\"}"; };
    Talked(sample, {
                       {R"({"op":"now","seconds":930787200})", "{}"},
                       {kOpen, kOk},
                       {R"({"op":"first"})", kOk},
                       {R"({"op":"stamp"})", stamp(each.first)},
                       {R"({"op":"update","record":{}})", kOk},
                       {R"({"op":"stamp"})", stamp(each.changed)},
                   });
  }
  ::unsetenv("TZ");
}

TEST(Drive, GoesOnAfterAnErrorAndDropsWhatIsNotClosed) {
  const Sample sample;
  const Finished run = Talked(sample, {
                                          {"{", R"({"error":"not valid JSON"})"},
                                          {kOpen, kOk},
                                          {kOpen, R"({"error":"a source is already open"})"},
                                          {R"({"op":"first"})", kOk},
                                          {R"({"op":"delete"})", kOk},
                                      });
  EXPECT_EQ(run.code, 1);
  EXPECT_EQ(sample.folder.Get("c/Data/Friends.WMCard"), test::ThreeCards().Build());
}

TEST(Drive, WritesTheRegistryOfTheProfile) {
  const Sample sample;
  EXPECT_EQ(Talked(sample, {{R"({"op":"clearnames"})", kOk}}).code, 0);
  EXPECT_NE(sample.folder.Get("registry.reg").find("\"SyncCatNames\"=\"\""), std::string::npos);
}

// The disk is as good as full for this process and those that it starts, for files of that size.
class FullDisk {
 public:
  explicit FullDisk(rlim_t size) {
    ::signal(SIGXFSZ, SIG_IGN);
    ::getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{size, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
  }
  ~FullDisk() { ::setrlimit(RLIMIT_FSIZE, &before); }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit before{};
};

TEST(Drive, FailsWhereTheRegistryCannotBeSaved) {
  const Sample sample;
  const std::string registry =
      sample.folder.Get("registry.reg") + "; " + std::string(1 << 16, 'x') + "\r\n";
  sample.folder.Put("registry.reg", registry);
  Finished run;
  {
    const FullDisk disk(1 << 12);
    run = Talked(sample, {{R"({"op":"clearnames"})", kOk}, {R"({"op":"clearnames"})", kOk}});
  }
  EXPECT_EQ(run.code, 1);
  EXPECT_EQ(
      WithoutBackupLines(run.messages),
      "pairwise: " + sample.Folder() + "/registry.reg: it can't be written: File too large\n");
  EXPECT_EQ(sample.folder.Get("registry.reg"), registry);
}

// The module itself counts a save as done.
TEST(Drive, SaysWhichFileCouldNotBeWrittenWhole) {
  const Sample sample;
  const std::string before = sample.folder.Get("c/Data/Friends.WMCard");
  const std::string value(60'000, 'x');
  Finished run;
  {
    const FullDisk disk(1 << 14);
    run = Talked(sample,
                 {{kOpen, kOk},
                  {R"({"op":"first"})", kOk},
                  {R"({"op":"update","record":{"fields":[["Company",")" + value + R"("]]}})", kOk},
                  {R"({"op":"close"})", kOk}});
  }
  EXPECT_EQ(run.code, 1);
  const std::string told =
      "Friends.WMCard: could not be written whole\npairwise: `pairwise restore ";
  const std::size_t at = run.messages.find(told);
  ASSERT_NE(at, std::string::npos) << run.messages;
  const std::size_t name = at + told.size();
  const std::string backup = run.messages.substr(name, run.messages.find('`', name) - name);
  EXPECT_EQ(sample.Run({"restore", backup}).code, 0);
  EXPECT_EQ(sample.folder.Get("c/Data/Friends.WMCard"), before);
}

TEST(Drive, SaysWhichFileCouldNotBeOpenedAgainOrDeleted) {
  const Sample sample;
  {
    Process process({"--profile", sample.Folder(), "drive"});
    const auto call = [&](const std::string& line) {
      process.Write(line + "\n");
      EXPECT_EQ(process.ReadLine(), kOk);
    };
    call(kOpen);
    call(R"({"op":"first"})");
    call(R"({"op":"update","record":{"fields":[["Company","x"]]}})");
    std::filesystem::rename(sample.Cardfile(), sample.Folder() + "/away");
    call(R"({"op":"close"})");
    const Finished run = process.Finish();
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(Has(run.messages, "Friends.WMCard: could not be written whole\n"));
    std::filesystem::rename(sample.Folder() + "/away", sample.Cardfile());
  }
  // What is removed on purpose, or was never there, is no loss.
  const Finished run =
      Talked(sample, {{kOpen, kOk},
                      {R"({"op":"close"})", kOk},
                      {R"({"op":"deletecategory","type":"contact","location":)"
                       R"("C:\\Data\\friends.WMCard"})",
                       kOk},
                      {kOpen, R"({"result":7})"},
                      {R"({"op":"importpath","path":"C:\\Data\\New.WMCard"})", kOk},
                      {R"({"op":"prepareimport","type":"contact","fields":["a"]})", kOk}});
  EXPECT_EQ(run.code, 0);
  EXPECT_EQ(WithoutBackupLines(run.messages), "");
}

// Beside its own folders a profile may not touch this machine.
TEST(Drive, WritesNowhereButOnTheDrives) {
  const Sample sample;
  std::string path = sample.Folder() + "/Outside.WMCard";
  std::replace(path.begin(), path.end(), '/', '\\');
  std::string json;
  for (const char c : path) json += c == '\\' ? "\\\\" : std::string(1, c);
  Talked(sample, {{R"({"op":"importpath","path":")" + json + "\"}", kOk},
                  {R"({"op":"prepareimport","type":"contact","fields":["a"]})", kOk}});
  EXPECT_FALSE(std::filesystem::exists(sample.Folder() + "/Outside.WMCard"));
}

TEST(Drive, KeepsASecondWriterAwayButNoReader) {
  const Sample sample;
  Process first({"--profile", sample.Folder(), "drive"});
  first.Write(kOpen + "\n");
  EXPECT_EQ(first.ReadLine(), kOk);
  const Finished second = sample.Run({"drive"}, "");
  EXPECT_EQ(second.code, 1);
  EXPECT_EQ(second.messages,
            "pairwise: " + sample.Folder() + ": another run is changing this profile's data\n");
  EXPECT_EQ(sample.Run({"list", "contact"}).code, 0);
  sample.folder.Put(".pairwise-demo", "");
  EXPECT_EQ(RunPairwise({"demo", sample.Folder()}).messages, second.messages);
  EXPECT_EQ(sample.folder.Get("c/Data/Friends.WMCard"), test::ThreeCards().Build());
  first.Write("{\"op\":\"close\"}\n");
  EXPECT_EQ(first.Finish().code, 0);
  EXPECT_EQ(sample.Run({"drive"}, "").code, 0);
}

}  // namespace
}  // namespace pw
