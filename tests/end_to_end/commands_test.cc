#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/posix/descriptor.h"
#include "tests/end_to_end/process.h"
#include "tests/end_to_end/sample.h"
#include "tests/end_to_end/terminal.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

constexpr uid_t kNobody = 65534;

// Read without a trace in the file's times.
std::string ContentOf(const fs::path& path) {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_NOATIME | O_CLOEXEC));
  EXPECT_TRUE(file.IsOpen()) << path;
  std::string content(fs::file_size(path), '\0');
  EXPECT_EQ(::read(file.Number(), content.data(), content.size()), ssize_t(content.size()));
  return content;
}

// Content and times of all that is below a folder, itself included.
std::map<std::string, std::string> Snapshot(const fs::path& folder) {
  std::map<std::string, std::string> all;
  std::vector<fs::path> paths = {folder};
  // First the times, as looking into a file or folder may change those.
  for (const auto& entry : fs::recursive_directory_iterator(folder)) paths.push_back(entry.path());
  for (const fs::path& path : paths) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    std::string& seen = all[path.string()];
    seen = std::to_string(status.st_mtim.tv_sec) + "." + std::to_string(status.st_mtim.tv_nsec);
    const bool isData = path.string().find("/Data") != std::string::npos;
    if (isData && !fs::is_directory(path)) {
      seen += " " + std::to_string(status.st_atim.tv_sec) + "." +
              std::to_string(status.st_atim.tv_nsec);
    }
    if (fs::is_regular_file(path)) seen += " " + ContentOf(path);
  }
  return all;
}

void Age(const std::string& path) {
  const timespec times[2] = {{100'000'000, 5}, {200'000'000, 6}};
  ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

std::size_t CopiesLeft() {
  std::size_t count = 0;
  for (const auto& entry : fs::directory_iterator(fs::temp_directory_path())) {
    count += entry.path().filename().string().rfind("pairwise-", 0) == 0 ? 1 : 0;
  }
  return count;
}

const std::vector<std::vector<std::string>> kReadingCommands = {
    {"info"},
    {"categories"},
    {"list", "contact"},
    {"show", "contact", "7"},
    {"export", "contact", "Friends", "--format", "vcf"},
};

TEST(Commands, ThatReadChangeNothingAndLeaveNothingBehind) {
  const Sample sample;
  sample.folder.Put("temp/keep", "");
  ::setenv("TMPDIR", (sample.Folder() + "/temp").c_str(), 1);
  Age(sample.Cardfile());
  Age(sample.Folder() + "/c/Data");
  Age(sample.Folder() + "/profile.toml");
  Age(sample.Folder() + "/registry.reg");
  auto before = Snapshot(sample.folder.Path());
  for (const auto& command : kReadingCommands) {
    const Finished run = sample.Run(command);
    EXPECT_EQ(run.code, 0) << run.messages;
    EXPECT_EQ(run.messages, "");
    EXPECT_FALSE(run.out.empty());
  }
  EXPECT_EQ(CopiesLeft(), 0U);
  ::unsetenv("TMPDIR");
  auto after = Snapshot(sample.folder.Path());
  before.erase(sample.Folder() + "/temp");
  after.erase(sample.Folder() + "/temp");
  EXPECT_EQ(after, before);
}

TEST(Commands, ThatAreStoppedRemoveTheirCopy) {
  const Sample sample;
  sample.folder.Put("temp/keep", "");
  auto cards = test::ThreeCards();
  cards.cards.assign(2000, cards.cards[0]);
  sample.folder.Put("c/Data/Friends.WMCard", cards.Build());
  ::setenv("TMPDIR", (sample.Folder() + "/temp").c_str(), 1);
  // More than a pipe holds: it can't end before we have read it, and so has its copy.
  Process process({"-p", sample.Folder(), "export", "contact"});
  EXPECT_EQ(process.ReadLine(), "[");
  EXPECT_EQ(CopiesLeft(), 1U);
  process.Signal(SIGTERM);
  EXPECT_EQ(process.WaitUnheard(), 128 + SIGTERM);
  EXPECT_EQ(CopiesLeft(), 0U);
  ::unsetenv("TMPDIR");
}

TEST(Commands, ReadAProfileThatCannotBeWritten) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs another user to run as";
  const Sample sample;
  for (const char* folder : {"", "/c", "/c/Data"}) {
    fs::permissions(sample.Folder() + folder, fs::perms(0555));
  }
  const bool mayRun = RunPairwise({"--help"}, "", kNobody).code == 0;
  if (!mayRun) GTEST_SKIP() << "the build is closed to others";
  const Finished list = sample.Run({"list", "contact"}, "", kNobody);
  EXPECT_EQ(list.code, 0) << list.messages;
  EXPECT_TRUE(Has(list.out, "Friends\t7\tAnn\tAbel\tAcme"));
  const Finished drive = sample.Run({"drive"}, "", kNobody);
  EXPECT_EQ(drive.code, 1);
  EXPECT_EQ(drive.messages, "pairwise: " + sample.Folder() + "/profile.lock: Permission denied\n");
}

TEST(Commands, ShowWhatTheCardfileHolds) {
  const Sample sample;
  const Finished list = sample.Run({"list", "contact", "friends"});
  EXPECT_EQ(list.out,
            "Category\tID\tFirst Name\tLast Name\tCompany\tContact Log\n"
            "Friends\t7\tAnn\tAbel\tAcme Second line\tmet in May likes tea\n"
            "Friends\t3\tBo\tBücher\t\t\n"
            "Friends\t12\t\t\tCorp\tn\n");
  const Finished show = sample.Run({"show", "contact", "7"});
  EXPECT_TRUE(Has(show.out, "\nCompany      Acme\n             Second line\n"));
  const Finished csv = sample.Run({"export", "contact", "--format", "csv"});
  EXPECT_TRUE(Has(csv.out, "Bücher"));
}

TEST(Commands, KeepFieldsOfOneNameApart) {
  const Sample sample;
  auto cards = test::ThreeCards();
  cards.names = "First Name\r\nPhone\r\nPhone\r\n";
  sample.folder.Put("c/Data/Friends.WMCard", cards.Build());
  const Finished list = sample.Run({"list", "contact"});
  EXPECT_TRUE(Has(list.out, "\tPhone\tPhone\tContact Log\n"));
  EXPECT_TRUE(Has(list.out, "\t7\tAnn\tAbel\tAcme Second line\t"));
  const Finished show = sample.Run({"show", "contact", "7"});
  EXPECT_TRUE(Has(show.out, "Abel\nPhone        Acme\n"));
  const Finished json = sample.Run({"export", "contact"});
  EXPECT_TRUE(Has(json.out, R"("fields": [["First Name", "Ann"], ["Phone", "Abel"], )"
                            R"(["Phone", "Acme\r\nSecond line"], ["Contact Log", )"));
  const Finished csv = sample.Run({"export", "contact", "--format", "csv"});
  EXPECT_EQ(csv.out.find("id,changed,First Name,Phone,Phone (2),Contact Log\r\n"), 0U) << csv.out;
  EXPECT_TRUE(Has(csv.out, ",Ann,Abel,\"Acme\r\nSecond line\","));
}

TEST(Commands, ExitAsTheyEndAndSayWhyInOneLine) {
  const Sample sample;
  sample.folder.Put("bad/profile.toml", "codepage = 1\n");
  const std::string profile = sample.Folder();
  const struct {
    std::vector<std::string> words;
    int code;
    std::string message;
  } cases[] = {
      {{}, 2, "what is to be done?"},
      {{"fly"}, 2, "fly"},
      {{"list"}, 2, "type is required"},
      {{"list", "contact"}, 2, "which profile?"},
      {{"-p", profile, "export", "contact", "--format", "xls"}, 2, "xls"},
      {{"-p", profile + "/none", "info"}, 1, profile + "/none/profile.toml: No such file"},
      {{"-p", profile + "/bad", "info"}, 1, profile + "/bad/profile.toml:1: codepage"},
      {{"-p", profile, "list", "card"}, 1, "no type 'card'"},
      {{"-p", profile, "list", "contact", "Foes"}, 1, "no contact category 'Foes'"},
      {{"-p", profile, "show", "contact", "8"}, 1, "no contact record 8"},
      {{"-p", profile, "export", "contact", "-o", profile + "/none/x"}, 1, profile + "/none/x: No"},
      {{"organiser", "--answer-to", "1"}, 2, "STEP=N"},
      {{"organiser", "--count", "0"}, 2, "--count"},
      {{"--profile", profile, "init", "--data", profile}, 1, "profile.toml: already there"},
      {{"demo", profile}, 1, profile + ": already there"},
  };
  ::unsetenv("PAIRWISE_PROFILE");
  for (const auto& each : cases) {
    const Finished run = RunPairwise(each.words);
    EXPECT_EQ(run.code, each.code) << each.message;
    EXPECT_TRUE(Has(run.messages, each.message));
    EXPECT_EQ(run.out, "");
  }
}

TEST(Commands, NameADamagedFileAndGoOnWithTheOthers) {
  const Sample sample;
  sample.folder.Put("c/Data/Broken.WMCard", "not a cardfile");
  const std::string complaint = sample.Folder() + "/c/Data/Broken.WMCard: damaged";
  const Finished all = sample.Run({"list", "contact"});
  EXPECT_EQ(all.code, 4);
  EXPECT_TRUE(Has(all.messages, complaint));
  EXPECT_TRUE(Has(all.out, "Abel"));
  EXPECT_EQ(sample.Run({"info"}).code, 4);
  const Finished show = sample.Run({"show", "contact", "7"});
  EXPECT_EQ(show.code, 4);
  EXPECT_TRUE(Has(show.messages, complaint));
  EXPECT_TRUE(Has(show.out, "Abel"));
  const Finished one = sample.Run({"list", "contact", "Broken"});
  EXPECT_EQ(one.code, 1);
  EXPECT_TRUE(Has(one.messages, complaint));
}

// Of which the module reads what it can, without a word.
TEST(Commands, NameACardfileThatIsNotWholeAndLeaveIt) {
  constexpr std::size_t kSecondCard = 1361 + 64;  // its entry in the index
  const Sample sample;
  const std::string whole = sample.folder.Get("c/Data/Friends.WMCard");
  std::string withoutText = whole;
  withoutText.replace(kSecondCard, 4, 4, '\0');
  for (const std::string& damaged : {whole.substr(0, whole.size() - 5), withoutText}) {
    sample.folder.Put("c/Data/Friends.WMCard", damaged);
    for (const char* command : {"list", "export", "wipe"}) {
      const Finished run = command == std::string("wipe") ? sample.Run({"wipe", "contact", "--yes"})
                                                          : sample.Run({command, "contact"});
      EXPECT_EQ(run.code, 4) << command;
      EXPECT_TRUE(Has(run.messages, "Friends.WMCard: damaged: at "));
    }
    EXPECT_EQ(sample.folder.Get("c/Data/Friends.WMCard"), damaged);
  }
}

TEST(Commands, InitTakesTheRegistryOfTheOldMachineAsItIs) {
  const Sample sample;
  const std::string exported =
      "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Gullwing\\Wingmate 98\\Version 1\\Main]\n"
      "\"PRODUCT\"=dword:00000001\n"
      "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Gullwing\\Wingmate 98\\Version 1\\Install]\n"
      "\"InstallDir\"=\"D:\\\\Wing\\\\\"\n; a note\n";
  sample.folder.Put("old.reg", exported);
  const std::string made = sample.Folder() + "/made";
  const Finished init = RunPairwise({"-p", made, "init", "--data", sample.Folder() + "/c/Data",
                                     "--registry", sample.Folder() + "/old.reg"});
  ASSERT_EQ(init.code, 0) << init.messages;
  EXPECT_EQ(sample.folder.Get("made/registry.reg"), exported);
  const Finished info = RunPairwise({"-p", made, "info"});
  EXPECT_TRUE(Has(info.out, "Wingmate 98"));
  const Finished categories = RunPairwise({"-p", made, "categories"});
  EXPECT_TRUE(Has(categories.out, "D:\\Wing\\UserData\\Friends.WMCard"));
  const Finished other =
      RunPairwise({"-p", made + "2", "init", "--data", sample.Folder(), "--product", "orb",
                   "--registry", sample.Folder() + "/old.reg"});
  EXPECT_EQ(other.code, 1);
  EXPECT_FALSE(fs::exists(made + "2"));
}

TEST(Commands, WipeNamesWhatCannotBeRead) {
  const TempFolder folder;
  const std::string demo = (folder.Path() / "demo").string();
  ASSERT_EQ(RunPairwise({"demo", demo}).code, 0);
  folder.Put("demo/data/Old.WMCard", "not a cardfile");
  folder.Put("demo/data/Bad.WMWrite", "not a binder");
  folder.Put("demo/data/AdaEVEN.WMW", folder.Get("demo/data/AdaEVEN.WMW").substr(0, 300));
  const auto wipe = [&](std::vector<std::string> words) {
    words.insert(words.begin(), {"-p", demo, "wipe"});
    return RunPairwise(words);
  };
  const Finished asked = wipe({"contact", "calendar", "memo"});
  EXPECT_EQ(asked.code, 2);
  EXPECT_TRUE(Has(asked.messages,
                  "Delete all of contact (40 records; 'Old' can't be read whole), calendar (0 "
                  "records; 'Calendar' can't be read whole), memo (6 records; 'Bad' can't be read "
                  "whole)?"));
  for (const char* file : {"Old.WMCard: damaged", "AdaEVEN.WMW: cut short", "Bad.WMWrite: the"}) {
    EXPECT_TRUE(Has(asked.messages, file));
  }
  const Finished wiped = wipe({"contact", "calendar", "memo", "--yes"});
  EXPECT_EQ(wiped.code, 4);
  EXPECT_EQ(wiped.out,
            "deleted; there is now contact (0 records; 'Old' can't be read whole), calendar (0 "
            "records), memo (0 records; 'Bad' can't be read whole)\n");
  EXPECT_EQ(folder.Get("demo/data/Old.WMCard"), "not a cardfile");
  for (const char* ending : {"WMWrite", "WMNoteHeader", "WMContent"}) {
    fs::remove(demo + "/data/Notebook." + ending);
  }
  const Finished nothing = wipe({"memo", "--yes"});
  EXPECT_EQ(nothing.code, 4);
  EXPECT_TRUE(Has(nothing.messages, "Bad.WMWrite: the binder can't be opened"));
  EXPECT_TRUE(Has(nothing.messages, "there is nothing that can be deleted\n"));
}

// One calendar without its event file is in the way of those that come upon calendars.
TEST(Commands, AnIncompleteCalendarIsNobodyElsesBusiness) {
  const Sample sample;
  sample.folder.Put("c/Data/BenData.wmw", "days");
  for (const char* type : {"calendar", "todo"}) {
    const Finished run = sample.Run({"new", type, "Ada"});
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(Has(run.messages, "BenEVEN.WMW: not there"));
  }
  EXPECT_EQ(sample.Run({"new", "memo", "Ada"}).code, 0);
  EXPECT_EQ(sample.Run({"wipe", "memo", "--yes"}).code, 0);
  EXPECT_EQ(sample.Run({"remove", "contact", "Friends", "--yes"}).code, 0);
  EXPECT_EQ(sample.folder.Get("c/Data/BenData.wmw"), "days");
}

// A calendar shows when it was exported, where nobody knows when an entry was changed.
std::string WithoutStamps(const std::string& out) {
  return std::regex_replace(out, std::regex("DTSTAMP:[0-9TZ]*"), "DTSTAMP");
}

TEST(Commands, DemoGivesTheSameEachTimeInAFolderOfItsOwn) {
  const TempFolder folder;
  const std::string demo = (folder.Path() / "demo").string();
  const Finished first = RunPairwise({"demo", demo});
  ASSERT_EQ(first.code, 0) << first.messages;
  EXPECT_EQ(WithoutBackupLines(first.messages), "");
  EXPECT_TRUE(Has(first.out, "1 category, 40 records"));
  EXPECT_TRUE(Has(first.out, "Överingenjör"));
  EXPECT_TRUE(Has(first.out, "\n1   New York     NY     USA"));
  EXPECT_TRUE(Has(first.out, "timezone  8 records\n"));
  const std::string cardfile = folder.Get("demo/data/Friends.WMCard");
  const Finished second = RunPairwise({"demo", demo});
  EXPECT_EQ(WithoutStamps(second.out), WithoutStamps(first.out));
  EXPECT_EQ(folder.Get("demo/data/Friends.WMCard"), cardfile);
  for (const char* file : {"demo/friends.vcf", "demo/friends.csv", "demo/friends.json"}) {
    EXPECT_TRUE(Has(folder.Get(file), "Wilhelmina")) << file;
  }
}

}  // namespace
}  // namespace pw
