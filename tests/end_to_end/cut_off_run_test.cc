#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <map>
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

  std::map<std::string, std::string> DataFiles() const {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::directory_iterator(fs::path(demo) / "data")) {
      if (!entry.is_regular_file()) continue;
      const std::string name = entry.path().filename().string();
      files[name] = folder.Get("demo/data/" + name);
    }
    return files;
  }

  // A change to each store, in a process that ends in the middle of that one. Gives its exit code.
  int RunUntil(int change) const {
    const pid_t child = ::fork();
    if (child == 0) {
      std::istringstream in;
      std::ostringstream out;
      const CommandLine line{{in, out, out}, demo, {}};
      ::_exit(WithWritingRun(line, false, [&](EngineRun& run) {
        Platform platform = CurrentPlatform();
        DyingFiles files(*platform.files, change);
        platform.files = &files;
        const Platform previous = SetPlatform(platform);
        std::istringstream calls(kCalls);
        const int code = RunDrive(run.Objects(), calls, out);
        SetPlatform(previous);
        return code;
      }));
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
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

  const TempFolder folder;
  const std::string demo = (folder.Path() / "demo").string();
  std::map<std::string, std::string> before;
};

TEST_F(CutOffRunTest, ABackupBringsEveryByteBackWhereverItHappened) {
  int change = 1;
  for (; RunUntil(change) == kCutOff; ++change) {
    const std::string mark = folder.Get("demo/run.unfinished");
    ASSERT_FALSE(mark.empty()) << change;
    const Finished restored = Run({"restore", mark.substr(0, mark.size() - 1)});
    ASSERT_EQ(restored.code, 0) << restored.messages;
    ASSERT_EQ(DataFiles(), before) << "at change " << change;
  }
  EXPECT_GT(change, 20) << "all stores save";
  EXPECT_NE(DataFiles(), before);
  EXPECT_FALSE(fs::exists(fs::path(demo) / "run.unfinished")) << "the last one ended well";
}

TEST_F(CutOffRunTest, IsToldUntilItIsSettled) {
  ASSERT_EQ(RunUntil(2), kCutOff);
  const auto cut = DataFiles();
  const Finished looked = Run({"info"});
  EXPECT_EQ(looked.code, 0);
  EXPECT_TRUE(Has(looked.messages, "was cut off"));
  // Nobody is there to say what is to become of the files.
  const Finished refused = Run({"drive"});
  EXPECT_EQ(refused.code, 1);
  EXPECT_TRUE(Has(refused.messages, "pairwise restore --keep"));
  // However many backups are made, that one stays.
  const std::string mark = folder.Get("demo/run.unfinished");
  for (int i = 0; i < 12; ++i) ASSERT_EQ(Run({"backup"}).code, 0);
  EXPECT_TRUE(Has(Run({"restore"}).out, mark));
  EXPECT_EQ(DataFiles(), cut);
  EXPECT_EQ(Run({"restore", "--keep"}).code, 0);
  EXPECT_EQ(DataFiles(), cut);
  EXPECT_EQ(Run({"drive"}).code, 0);
  EXPECT_EQ(Run({"info"}).messages, "");
  EXPECT_EQ(Run({"restore", "--keep"}).code, 1) << "there is nothing to keep";
}

}  // namespace
}  // namespace pw
