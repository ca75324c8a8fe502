#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "host/commands/commands.h"
#include "host/commands/profile_run.h"
#include "host/drive.h"
#include "platform/platform.h"
#include "tests/end_to_end/process.h"
#include "tests/end_to_end/profile_backups.h"
#include "tests/end_to_end/terminal.h"
#include "tests/platform/temp_folder.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

constexpr int kCutOff = 99;

// The process ends in the middle of the change of that number to any file, counted from 1.
class DyingFiles : public FilesWrapper {
 public:
  DyingFiles(Files& target, int changes) : FilesWrapper(target), left(changes) {}

  std::unique_ptr<File> Open(const std::string& path, OpenMode mode, Sharing sharing) override {
    auto file = FilesWrapper::Open(path, mode, sharing);
    if (file == nullptr) return nullptr;
    if (mode == OpenMode::kCreateAlways) Change();
    return std::make_unique<DyingFile>(std::move(file), *this);
  }
  bool Delete(const std::string& path) override {
    const bool deleted = FilesWrapper::Delete(path);
    Change();
    return deleted;
  }

 private:
  class DyingFile : public FileWrapper {
   public:
    DyingFile(std::unique_ptr<File> target, DyingFiles& files)
        : FileWrapper(std::move(target)), files(files) {}
    bool Write(std::string_view bytes) override {
      const std::string_view half = bytes.substr(0, bytes.size() / 2);
      if (!FileWrapper::Write(half)) return false;
      files.Change();
      return FileWrapper::Write(bytes.substr(half.size()));
    }
    bool Truncate() override {
      const bool done = FileWrapper::Truncate();
      files.Change();
      return done;
    }

   private:
    DyingFiles& files;
  };

  void Change() {
    if (--left == 0) ::_exit(kCutOff);
  }

  int left;
};

class CutOffRunTest : public testing::Test {
 protected:
  CutOffRunTest() {
    const Finished made = RunPairwise({"demo", demo});
    EXPECT_EQ(made.code, 0) << made.messages;
    before = DataFiles();
  }

  FilesByName DataFiles() const { return FilesIn(folder, "demo/data"); }

  // The name that the mark has, as a line.
  std::string Mark() const { return folder.Get("demo/run.unfinished"); }
  std::string MarkedBackup() const { return Mark().substr(0, Mark().find('\n')); }

  // Runs in a process of its own, where nobody is at a terminal. Gives its exit code.
  int InProcess(const std::function<int(const CommandLine&)>& work) const {
    const pid_t child = ::fork();
    if (child == 0) {
      std::istringstream nobody;
      std::ostringstream out;
      ::_exit(work({{nobody, out, out}, demo, {}}));
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }

  // A change to each store, in a process that ends in the middle of that one.
  int RunUntil(int change, const char* calls = kCalls) const {
    return InProcess([&](const CommandLine& line) {
      return WithWritingRun(line, false, [&](EngineRun& run) {
        Platform platform = CurrentPlatform();
        DyingFiles files(*platform.files, change);
        platform.files = &files;
        const Platform previous = SetPlatform(platform);
        std::istringstream in(calls);
        const int code = RunDrive(run.Objects(), in, line.console.out);
        SetPlatform(previous);
        return code;
      });
    });
  }

  Finished Run(std::vector<std::string> words) const {
    words.insert(words.begin(), {"-p", demo});
    return RunPairwise(words);
  }

  static constexpr const char* kCalls =
      R"({"op":"open","type":"contact","location":"C:\\Data\\Friends.WMCard"}
{"op":"first"}
{"op":"delete"}
{"op":"close"}
{"op":"open","type":"todo","location":"C:\\Data\\Ada"}
{"op":"first"}
{"op":"delete"}
{"op":"close"}
{"op":"open","type":"memo","location":"C:\\Data\\Notebook;Notebook"}
{"op":"add","record":{"Subject":"one more","Body":"and its text"}}
{"op":"close"}
{"op":"open","type":"calendar","location":"C:\\Data\\Ada"}
{"op":"first"}
{"op":"delete"}
{"op":"close"}
{"op":"syncing","types":["todo","memo"]}
{"op":"deleteall"}
)";

  static constexpr const char* kMakingCalls =
      R"({"op":"open","type":"calendar","location":"C:\\Data\\Ada"}
{"op":"add","record":{"Subject":"one","StartDate":"1998-03-02T10:00:00","EndDate":"1998-03-02T11:00:00"}}
{"op":"close"}
{"op":"open","type":"todo","location":"C:\\Data\\Ada"}
{"op":"add","record":{"Subject":"two","DueDate":"1998-03-02"}}
{"op":"close"}
{"op":"newcategory","type":"contact","name":"People","template":0}
)";

  const TempFolder folder;
  const std::string demo = (folder.Path() / "demo").string();
  FilesByName before;
};

TEST_F(CutOffRunTest, ABackupBringsEveryByteBackWhereverItHappened) {
  int change = 1;
  for (; RunUntil(change) == kCutOff; ++change) {
    ASSERT_FALSE(Mark().empty()) << change;
    const Finished restored = Run({"restore", MarkedBackup()});
    ASSERT_EQ(restored.code, 0) << restored.messages;
    ASSERT_EQ(DataFiles(), before) << "at change " << change;
  }
  EXPECT_GT(change, 20) << "all stores save";
  EXPECT_NE(DataFiles(), before);
  EXPECT_FALSE(fs::exists(fs::path(demo) / "run.unfinished")) << "the last one ended well";
}

// What the run has newly made, and not finished, goes.
TEST_F(CutOffRunTest, LeavesNoNewFiles) {
  for (const char* file :
       {"AdaCALL.WMW", "AdaData.WMW", "AdaEVEN.WMW", "AdaRecr.WMW", "AdaTASK.WMW", "CLOCKS.DAT"}) {
    ASSERT_TRUE(fs::remove(fs::path(demo) / "data" / file)) << file;
  }
  before = DataFiles();
  std::size_t mostNew = 0;
  int change = 1;
  for (; RunUntil(change, kMakingCalls) == kCutOff; ++change) {
    const std::size_t made = DataFiles().size() - before.size();
    mostNew = std::max(mostNew, made);
    folder.Put("demo/data/letter.txt", "the person's own");
    const Finished restored = Run({"restore", MarkedBackup()});
    ASSERT_EQ(restored.code, 0) << restored.messages;
    EXPECT_EQ(made > 0, restored.messages.find(", so it is removed") != std::string::npos);
    before["letter.txt"] = "the person's own";
    ASSERT_EQ(DataFiles(), before) << "at change " << change;
  }
  EXPECT_GT(change, 5);
  EXPECT_GT(mostNew, 3U);
  EXPECT_GT(DataFiles().size(), before.size());
}

// An older backup than the run's own: what was there before the run stays, though it may be half
// written, which is told.
TEST_F(CutOffRunTest, TakesAlongOnlyWhatItHasMade) {
  const std::string older = BackupOf(demo);
  ASSERT_EQ(Run({"new", "contact", "Later", "--field", "Name"}).code, 0);
  ASSERT_EQ(Run({"new", "memo", "LaterNotes"}).code, 0);
  before = DataFiles();
  constexpr const char* kCallsOnNewFiles = R"({"op":"newcategory","type":"memo","name":"Cut"}
{"op":"open","type":"contact","location":"C:\\Data\\Later.WMCard"}
{"op":"add","record":{"Name":"Ann"}}
{"op":"close"}
)";
  bool wasLeftCut = false;
  int change = 1;
  for (; RunUntil(change, kCallsOnNewFiles) == kCutOff; ++change) {
    const std::string cut = folder.Get("demo/data/Later.WMCard");
    const std::string marked = MarkedBackup();
    const Finished restored = Run({"restore", older});
    ASSERT_EQ(restored.code, 0) << restored.messages;
    auto expected = before;
    expected["Later.WMCard"] = cut;
    ASSERT_EQ(DataFiles(), expected) << "at change " << change;
    const bool isLeftCut = cut != before["Later.WMCard"];
    wasLeftCut = wasLeftCut || isLeftCut;
    std::string told = "Later.WMCard: not in " + older;
    told.append(", so it stays as the run that was cut off has left it; ").append(marked);
    told.append(" has it as it was\n");
    EXPECT_EQ(restored.messages.find(told) != std::string::npos, isLeftCut) << restored.messages;
    // Of the many backups of this loop the older one must not be too old.
    for (const std::string& name : ListedBackups(demo)) {
      if (name != older) fs::remove_all(fs::path(demo) / "backups" / name);
    }
    folder.Put("demo/data/Later.WMCard", before["Later.WMCard"]);
  }
  EXPECT_GT(change, 5);
  EXPECT_TRUE(wasLeftCut);
}

TEST_F(CutOffRunTest, IsToldUntilItIsSettled) {
  ASSERT_EQ(RunUntil(2), kCutOff);
  const auto cut = DataFiles();
  const Finished looked = Run({"info"});
  EXPECT_EQ(looked.code, 4) << "the cardfile is half written";
  EXPECT_TRUE(Has(looked.messages, "was cut off"));
  // Nobody is there to say what is to become of the files.
  const Finished refused = Run({"drive"});
  EXPECT_EQ(refused.code, 1);
  EXPECT_TRUE(Has(refused.messages, "pairwise restore --keep"));
  // However many backups are made, that one stays.
  const std::string mark = Mark();
  for (int i = 0; i < 12; ++i) {
    folder.Put("demo/data/counted", std::to_string(i));
    const Finished made = Run({"backup"});
    ASSERT_EQ(made.code, 0);
    EXPECT_TRUE(Has(made.messages, "was cut off"));
  }
  const Finished list = Run({"restore"});
  EXPECT_TRUE(Has(list.out, mark));
  EXPECT_TRUE(Has(list.messages, "was cut off"));
  fs::remove(fs::path(demo) / "data/counted");
  EXPECT_EQ(DataFiles(), cut);
  EXPECT_EQ(Run({"restore", "--keep"}).code, 0);
  EXPECT_EQ(DataFiles(), cut);
  EXPECT_EQ(Run({"drive"}).code, 0);
  EXPECT_FALSE(Has(Run({"info"}).messages, "was cut off"));
  EXPECT_EQ(Run({"restore", "--keep"}).code, 1) << "there is nothing to keep";
}

// A mark that tells no backup: not all of it came to the disk, say.
TEST_F(CutOffRunTest, IsToldAlsoWithoutTheBackup) {
  const Finished made = Run({"backup"});
  const std::string backup = made.out.substr(0, made.out.size() - 1);
  for (const char* mark : {"", "\n", "..\n", "2026-11-25T21-49-01\n"}) {
    folder.Put("demo/run.unfinished", mark);
    for (const Finished& run : {Run({"info"}), Run({"drive"}), Run({"restore"})}) {
      EXPECT_TRUE(Has(run.messages, "was cut off")) << mark;
      EXPECT_TRUE(Has(run.messages, "`pairwise restore` lists the backups")) << mark;
    }
    EXPECT_EQ(Run({"restore", ""}).code, 1);
    EXPECT_EQ(Run({"restore", backup}).code, 0);
    EXPECT_EQ(DataFiles(), before);
    EXPECT_FALSE(fs::exists(fs::path(demo) / "run.unfinished"));
  }
}

TEST_F(CutOffRunTest, IsSettledAtATerminal) {
  ASSERT_EQ(RunUntil(2), kCutOff);
  const auto cut = DataFiles();
  const auto drive = [&](const std::string& typed) {
    return RunAtTerminal({"-p", demo, "drive"}, typed);
  };
  for (const char* other : {"\n", "yes\n"}) {
    const Finished stopped = drive(other);
    EXPECT_EQ(stopped.code, 1);
    EXPECT_TRUE(Has(stopped.out, "nothing was done\n"));
    EXPECT_EQ(DataFiles(), cut);
  }
  const Finished restored = drive("r\n");
  EXPECT_EQ(restored.code, 0) << restored.out;
  EXPECT_EQ(DataFiles(), before);
  const std::string saved = "what was there before is in ";
  const std::string name = restored.out.substr(restored.out.rfind(saved) + saved.size(), 30);
  EXPECT_EQ(Run({"restore", name.substr(0, name.find('\n'))}).code, 0);
  EXPECT_EQ(DataFiles(), cut) << "it can be taken back";

  folder.Put("demo/run.unfinished", "");
  const Finished kept = drive("k\n");
  EXPECT_EQ(kept.code, 0) << kept.out;
  EXPECT_FALSE(Has(kept.out, "(r)")) << "there is none to be offered";
  EXPECT_EQ(DataFiles(), cut);
}

// What is looked at and asked about is what is there once the run is settled.
TEST_F(CutOffRunTest, IsSettledBeforeAWipeAsks) {
  ASSERT_EQ(RunUntil(2), kCutOff);
  const auto cut = DataFiles();
  const Finished refused = Run({"wipe", "contact", "--yes"});
  EXPECT_EQ(refused.code, 1);
  EXPECT_TRUE(Has(refused.messages, "was cut off"));
  EXPECT_EQ(DataFiles(), cut);
  const Finished asked = RunAtTerminal({"-p", demo, "wipe", "contact"}, "r\nno\n");
  EXPECT_EQ(asked.code, 1);
  EXPECT_TRUE(Has(asked.out, "Delete all of contact (40 records)?"));
  EXPECT_EQ(DataFiles(), before);
}

// Whoever stops at a question, in whatever way, has left nothing to be settled.
TEST_F(CutOffRunTest, IsNoneThatWasOnlyAskedFor) {
  folder.Put("demo/data/changed", "since the last backup");
  before = DataFiles();
  const auto backups = ListedBackups(demo);
  const int code = InProcess([&](const CommandLine& line) {
    return WithWritingRun(
        line, false, [](EngineRun& /*run*/) { return 1; },
        [&](EngineRun& /*run*/) {
          return Mark().empty() && ListedBackups(demo) == backups ? kCutOff : 2;
        });
  });
  EXPECT_EQ(code, kCutOff) << "nothing is made or marked before the answer";
  const std::vector<std::string> remove = {"-p", demo, "remove", "contact", "Friends"};
  const Finished stopped = RunAtTerminal(remove, "no\n");
  EXPECT_EQ(stopped.code, 1);
  EXPECT_TRUE(Has(stopped.out, "nothing was done\n"));
  EXPECT_EQ(RunPairwise(remove).code, 2) << "nobody is there";
  EXPECT_EQ(ListedBackups(demo), backups);
  EXPECT_EQ(DataFiles(), before);
  EXPECT_EQ(RunAtTerminal(remove, "yes\n").code, 0);
  EXPECT_EQ(DataFiles().count("Friends.WMCard"), 0U);
}

}  // namespace
}  // namespace pw
