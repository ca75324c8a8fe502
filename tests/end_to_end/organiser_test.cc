#include <signal.h>

#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/commands/commands.h"
#include "host/commands/profile_run.h"
#include "host/engine_run.h"
#include "plugin/handshake.h"
#include "tests/end_to_end/process.h"
#include "tests/end_to_end/profile_backups.h"
#include "tests/end_to_end/sample.h"

namespace pw {
namespace {

// This process has a word with an organiser that is another one, as in a run of the host's.
class OrganiserTest : public ::testing::Test {
 protected:
  OrganiserTest() { ::setenv("XDG_RUNTIME_DIR", sample.Folder().c_str(), 1); }

  std::unique_ptr<EngineRun> Run(RunMode mode) {
    const auto profile = ReadProfile(sample.Folder());
    EXPECT_TRUE(profile);
    auto run = EngineRun::Start(*profile, mode, messages);
    EXPECT_TRUE(run) << run.Why().message;
    return std::move(*run);
  }

  std::unique_ptr<Process> Start(std::vector<std::string> options) {
    options.insert(options.begin(), {"--profile", sample.Folder(), "organiser"});
    auto process = std::make_unique<Process>(options);
    EXPECT_EQ(process->ReadLine(), "ready");
    return process;
  }

  const Sample sample;
  std::ostringstream messages;
};

TEST_F(OrganiserTest, HearsEachStepAndFindsTheNotes) {
  const auto organiser = Start({"--answer-to", "1=5", "--count", "4"});
  const auto run = Run(RunMode::kWriting);
  EXPECT_EQ(NotifyOrganiserOpen("C:\\Data\\M\xFCller.WMCard", 0, kContactFiles, false),
            kOrganiserAgrees);
  EXPECT_FALSE(NotifyOrganiserLock(0, false));
  EXPECT_TRUE(NotifyOrganiserEnd(true, 0, false));
  EXPECT_TRUE(NotifyOrganiserEnd(false, 0, false));
  const Finished heard = organiser->Finish();
  EXPECT_EQ(heard.code, 0);
  // The message's number, which depends on its name alone.
  const std::string number = heard.out.substr(0, heard.out.find(','));
  EXPECT_EQ(number.rfind("message 0x", 0), 0U);
  EXPECT_EQ(heard.out,
            number + ", step 0: a source wants the files; answered 0\n" +
                "  Cardfile      C:\\Data\\Müller.WMCard\n" + number +
                ", step 1: the source opens the files now; answered 5\n" + number +
                ", step 2: the source is done, the files may be taken back; answered 0\n" + number +
                ", step 3: the source gives up, the files are as they were; answered 0\n");
  EXPECT_TRUE(
      Has(sample.folder.Get("registry.reg"), "\"Cardfile\"=\"C:\\\\Data\\\\M\xFCller.WMCard\""));
}

TEST_F(OrganiserTest, ThatIsDisabledMakesTheSourceWait) {
  const auto organiser = Start({"--disabled"});
  const auto run = Run(RunMode::kWriting);
  const auto open = [] { return NotifyOrganiserOpen("C:\\x", 0, kContactFiles, false); };
  // Without windows of our own the organiser's dialog could be ours.
  EXPECT_EQ(open(), kOrganiserAgrees);
  run->Objects().setWindowChain(true);
  EXPECT_EQ(open(), kOrganiserBusy);
  run->Objects().setWindowChain(false);
  EXPECT_EQ(open(), kOrganiserAgrees);
  organiser->Signal(SIGINT);
  EXPECT_EQ(organiser->Finish().code, 0);
  EXPECT_EQ(open(), kOrganiserOther);
}

// Of a source that was let go without an end it would wait for its files for ever.
TEST_F(OrganiserTest, HearsTheEndOfEachCommandThatWrites) {
  const std::string demo = sample.Folder() + "/demo";
  ASSERT_EQ(RunPairwise({"demo", demo}).code, 0);
  sample.folder.Put("demo/data/Old.WMCard", "not a cardfile");
  const std::string csv = sample.Folder() + "/memos.csv";
  ASSERT_EQ(RunPairwise({"-p", demo, "export", "memo", "--format", "csv", "-o", csv}).code, 0);
  const std::vector<std::string> commands[] = {{"wipe", "calendar", "todo", "memo", "--yes"},
                                               {"wipe", "contact", "--yes"},
                                               {"wipe", "todo"},
                                               {"new", "calendar", "Ben"},
                                               {"import", "memo", csv}};
  for (std::vector<std::string> words : commands) {
    const auto organiser = Start({});
    words.insert(words.begin(), {"-p", demo});
    RunPairwise(words);
    organiser->Signal(SIGINT);
    const std::string heard = organiser->Finish().out;
    const auto count = [&](const char* step) {
      std::size_t found = 0;
      for (std::size_t at = 0; (at = heard.find(step, at)) != std::string::npos; ++at) ++found;
      return found;
    };
    EXPECT_EQ(count(", step 0:"), count(", step 2:") + count(", step 3:")) << words[2] << heard;
    EXPECT_EQ(heard.empty(), words == std::vector<std::string>({"-p", demo, "wipe", "todo"}));
  }
}

TEST_F(OrganiserTest, ThatIsDisabledStopsCommandsThatWrite) {
  const std::string demo = sample.Folder() + "/demo";
  ASSERT_EQ(RunPairwise({"demo", demo}).code, 0);
  std::vector<std::vector<std::string>> commands = {{"wipe", "contact", "memo", "--yes"},
                                                    {"wipe", "calendar"},
                                                    {"remove", "contact", "Friends", "--yes"},
                                                    {"new", "contact", "Ben", "--field", "x"},
                                                    {"new", "calendar", "Ben"}};
  for (const char* type : {"contact", "calendar", "todo", "memo", "timezone"}) {
    const std::string file = sample.Folder() + "/" + type + ".json";
    ASSERT_EQ(RunPairwise({"-p", demo, "export", type, "-o", file}).code, 0);
    commands.push_back({"import", type, file});
  }
  const FilesByName before = FilesIn(sample.folder, "demo/data");
  const auto backups = ListedBackups(demo);
  const auto organiser = Start({"--disabled"});
  for (std::vector<std::string> words : commands) {
    words.insert(words.begin(), {"-p", demo});
    const Finished run = RunPairwise(words);
    EXPECT_EQ(run.code, 1) << words[2] << " " << words[3];
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.messages,
              "pairwise: the organiser is busy with a dialog; close it, and try again; nothing was "
              "done\n");
  }
  EXPECT_EQ(FilesIn(sample.folder, "demo/data"), before);
  EXPECT_EQ(ListedBackups(demo), backups);
  EXPECT_EQ(RunPairwise({"-p", demo, "drive"}, "{\"op\":\"name\"}\n").code, 0);
  organiser->Signal(SIGINT);
  organiser->Finish();
}

TEST_F(OrganiserTest, ThatIsDisabledWhileSomebodyIsAskedStopsThemToo) {
  std::unique_ptr<Process> organiser;
  std::istringstream nobody;
  const CommandLine line{{nobody, messages, messages}, sample.Folder(), {}};
  const int code = WithWritingRun(
      line, true, [](EngineRun& /*run*/) { return 0; },
      [&](EngineRun& /*run*/) {
        organiser = Start({"--disabled"});
        return std::nullopt;
      });
  EXPECT_EQ(code, 1);
  EXPECT_TRUE(Has(messages.str(), "the organiser is busy with a dialog"));
  organiser->Signal(SIGINT);
  organiser->Finish();
}

TEST_F(OrganiserTest, HearsNothingOfARunThatReads) {
  const auto organiser = Start({});
  const std::string registry = sample.folder.Get("registry.reg");
  {
    const auto run = Run(RunMode::kReading);
    EXPECT_EQ(NotifyOrganiserOpen("C:\\x", 0, kContactFiles, false), kOrganiserOther);
    EXPECT_EQ(run->Manager().ClearSyncCategoryNames(), kResultOk);
    EXPECT_FALSE(run->RegistryFailure());
  }
  organiser->Signal(SIGINT);
  EXPECT_EQ(organiser->Finish().out, "");
  EXPECT_EQ(sample.folder.Get("registry.reg"), registry) << "what the module writes is forgotten";
}

}  // namespace
}  // namespace pw
