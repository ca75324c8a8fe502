#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/commands/commands.h"
#include "host/commands/profile_run.h"
#include "host/new_calendar.h"
#include "platform/platform.h"
#include "tests/end_to_end/process.h"
#include "tests/end_to_end/profile_backups.h"
#include "tests/end_to_end/sample.h"
#include "tests/end_to_end/terminal.h"

// What `pairwise new` makes, and when it makes nothing.
namespace pw {
namespace {

namespace fs = std::filesystem;

// A profile whose organiser has this list of templates.
class NewOfTemplateTest : public testing::Test {
 protected:
  void PutTemplates(const std::string& list) const {
    sample.folder.Put("profile.toml", description + "3 = 'C:'\n");
    sample.folder.Put("c/Data/crdstyle.dat", list);
  }

  std::vector<std::string> NamesOf(const std::string& cardfile) const {
    std::vector<std::string> names;
    std::istringstream in(sample.Run({"export", "contact", cardfile, "--format", "csv"}).out);
    for (std::string name; std::getline(in, name, ',');) names.push_back(name);
    return names;
  }

  const Sample sample;
  const std::string description = sample.folder.Get("profile.toml");
};

// What is there is looked for by the name that the files will get.
TEST(New, LeavesWhatIsThereAndTakesOnlyNamesThatStayWhole) {
  const Sample sample;
  ASSERT_EQ(sample.Run({"new", "memo", "Whole"}).code, 0);
  sample.folder.Put("c/Data/AdaEVEN.WMW", "events");
  sample.folder.Put("c/Data/Rest.WMContent", "texts");
  for (const char* ending : {".WMWrite", ".WMNoteHeader", ".WMContent"}) {
    sample.folder.Put(std::string("c/Data/Bad") + ending, "what is left of it");
  }
  std::vector<std::string> fieldsOf4097Bytes = {"contact", "A"};
  for (int i = 0; i < 4; ++i) {
    fieldsOf4097Bytes.insert(fieldsOf4097Bytes.end(), {"--field", std::string(1020, 'a')});
  }
  fieldsOf4097Bytes.insert(fieldsOf4097Bytes.end(), {"--field", "1234567"});
  const struct {
    std::vector<std::string> words;
    int code;
    std::string message;
  } cases[] = {
      {{"todo", " Ada "}, 1, "AdaEVEN.WMW: is there already"},
      {{"calendar", "Ada "}, 1, "AdaEVEN.WMW: is there already"},
      {{"contact", "  Friends", "--field", "x"}, 1, "Friends.WMCard: is there already"},
      {{"memo", " Whole"}, 1, "Whole.WMWrite: section 'Whole' is there already"},
      {{"memo", "Rest"}, 1, "Rest.WMContent: is there already"},
      {{"memo", "Bad"}, 1, "Bad.WMWrite: is there already"},
      {{"contact", "日本", "--field", "A"}, 2, "'日本' has characters that the organiser lacks"},
      {{"contact", "A", "--field", "日本"}, 2, "'日本' has characters that the organiser lacks"},
      {{"contact", "A", "--field", "a\tb"}, 2, "control character"},
      {{"contact", "A", "--field", ""}, 2, "a field needs a name"},
      {{"contact", "A", "--field", std::string(1024, 'a')}, 2, "room for 1,023 characters"},
      {fieldsOf4097Bytes, 2, "room for 4,096 bytes, two for the end of each, and 4097"},
      {{"memo", "a\nb"}, 2, "control character"},
      {{"memo", "a\u0081"}, 2, "control character"},
      {{"memo", "a;b"}, 2, "holds no ;"},
      {{"memo", "The fifth book of the year"}, 2, "room for 24 characters"},
      {{"todo", "  "}, 2, "isn't empty"},
  };
  const auto before = FilesIn(sample.folder, "c/Data");
  for (const auto& each : cases) {
    std::vector<std::string> words = each.words;
    words.insert(words.begin(), "new");
    const Finished run = sample.Run(words);
    EXPECT_EQ(run.code, each.code) << each.message;
    EXPECT_TRUE(Has(run.messages, each.message));
    EXPECT_EQ(run.out, "");
  }
  EXPECT_EQ(FilesIn(sample.folder, "c/Data"), before);
  EXPECT_EQ(sample.Run({"new", "contact", " Müller & Co ", "--field", "Größe"}).code, 0);
  EXPECT_TRUE(Has(sample.Run({"list", "contact", "Müller & Co"}).out, "\tGröße\t"));
}

// Neither a backup nor a mark is made, nor a name noted, before all is known that can be.
TEST_F(NewOfTemplateTest, LeavesNoTraceWhereNothingCanBeMade) {
  const std::string registry = sample.folder.Get("registry.reg");
  const std::string two = "[Plain]Name\r\n[Club]Member\tSince\r\n";
  const std::vector<std::string> chess = {"contact", "Chess"};
  const std::string tooLong(300, 'n');
  const struct {
    std::string list;
    std::vector<std::string> words;
    const char* typed;  // nullptr where nobody is there
    int code;
    std::string message;
  } cases[] = {
      {two, chess, "3\n", 1, "'3' is none of 1 to 2; nothing was made\n"},
      {two, chess, nullptr, 2, "which template? Give one as --template NAME; there is 'Plain',"},
      {two, {"contact", "Chess", "--template", "Cats"}, nullptr, 1, "there is no template 'Cats'"},
      {two, {"contact", tooLong, "--template", "Club"}, nullptr, 1, ".WMCard: File name too long"},
      {two, {"contact", tooLong, "--field", "a"}, nullptr, 1, ".WMCard: File name too long"},
      {two, {"calendar", tooLong}, nullptr, 1, "EVEN.WMW: File name too long"},
      {two, {"contact", "Friends"}, nullptr, 1, "Friends.WMCard: is there already"},
      {"no brackets\r\n", chess, "\n", 1, "c/Data/crdstyle.dat: it names no template (entry 3 of"},
      {"", {"contact", "Chess", "--template", "Club"}, nullptr, 1, "it names no template"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.message);
    PutTemplates(each.list);
    const auto before = FilesIn(sample.folder, "c/Data");
    std::vector<std::string> words = {"-p", sample.Folder(), "new"};
    words.insert(words.end(), each.words.begin(), each.words.end());
    const Finished run =
        each.typed == nullptr ? RunPairwise(words) : RunAtTerminal(words, each.typed);
    EXPECT_EQ(run.code, each.code);
    EXPECT_TRUE(Has(run.messages + run.out, each.message));
    EXPECT_FALSE(fs::exists(sample.Folder() + "/backups"));
    EXPECT_FALSE(fs::exists(sample.Folder() + "/run.unfinished"));
    EXPECT_EQ(sample.folder.Get("registry.reg"), registry);
    EXPECT_EQ(FilesIn(sample.folder, "c/Data"), before);
  }
  fs::remove(sample.folder.Path() / "c/Data/crdstyle.dat");
  EXPECT_TRUE(Has(sample.Run({"new", "contact", "Chess"}).messages,
                  "c/Data/crdstyle.dat: no templates can be read there"));
}

TEST_F(NewOfTemplateTest, AsksForItByItsNumber) {
  PutTemplates("[Plain]Name\r\n[Club]Member\tSince\r\n");
  const std::vector<std::string> words = {"-p", sample.Folder(), "new", "contact", "Chess"};
  for (const char* typed : {"1x\n", "3\n", "0\n", "-1\n", "4294967297\n"}) {
    const Finished run = RunAtTerminal(words, typed);
    EXPECT_EQ(run.code, 1) << typed;
    EXPECT_TRUE(Has(run.out, "is none of 1 to 2; nothing was made\n"));
    EXPECT_FALSE(fs::exists(sample.Folder() + "/c/Data/Chess.WMCard"));
  }
  const Finished run = RunAtTerminal(words, "2\n");
  EXPECT_EQ(run.code, 0) << run.out;
  EXPECT_TRUE(Has(sample.Run({"list", "contact", "Chess"}).out, "\tMember\tSince"));
  EXPECT_TRUE(Has(sample.folder.Get("registry.reg"), "\"SyncCatNames\"=\"Chess.WMCard\""));
  EXPECT_EQ(sample.Run({"new", "contact", "Go", "--template", "plain"}).code, 0);
  EXPECT_TRUE(Has(sample.Run({"list", "contact", "Go"}).out, "\tName"));
}

// The organiser's own template may name more than a cardfile has room for.
TEST_F(NewOfTemplateTest, TellsOfFieldsThatHaveNoRoom) {
  const std::string a(40'000, 'a');
  const std::string b(1'000, 'b');
  PutTemplates("[Fit]" + b + "\t" + b + "\r\n[Cut]" + a + "\t" + a + "\tc\r\n[Long]" + b + "\t" +
               b + "\t" + b + "\t" + b + "\t" + b + "\r\n");
  const struct {
    const char* name;
    int code;
    const char* message;
  } cases[] = {
      {"Fit", 0, ""},
      {"Cut", 4, "Cut.WMCard: the last 2 fields were left out"},
      {"Long", 4, "Long.WMCard: the names of all fields have room for 4,096 bytes"},
  };
  for (const auto& each : cases) {
    const Finished run = sample.Run({"new", "contact", each.name, "--template", each.name});
    EXPECT_EQ(run.code, each.code) << each.name;
    EXPECT_TRUE(Has(run.messages, each.message));
    EXPECT_TRUE(fs::exists(sample.Folder() + "/c/Data/" + each.name + ".WMCard"));
  }
}

TEST(New, AdvisesNoRestoreWhereNothingWasChanged) {
  const TempFolder folder;
  const std::string demo = (folder.Path() / "demo").string();
  ASSERT_EQ(RunPairwise({"demo", demo}).code, 0);
  const std::string name(300, 'n');
  const Finished drive =
      RunPairwise({"-p", demo, "drive"}, R"({"op":"newcategory","type":"contact","name":")" + name +
                                             R"(","template":0})"
                                             "\n");
  EXPECT_EQ(drive.code, 1);
  EXPECT_TRUE(Has(drive.messages, name + ".WMCard: could not be made\n"));
  EXPECT_EQ(drive.messages.find("restore"), std::string::npos) << drive.messages;
}

// Nothing can be made new.
class ClosedFiles : public FilesWrapper {
 public:
  explicit ClosedFiles(Files& target) : FilesWrapper(target) {}

  std::unique_ptr<File> Open(const std::string& path, OpenMode mode, Sharing sharing) override {
    const bool makes = mode == OpenMode::kCreateAlways || mode == OpenMode::kOpenAlways;
    return makes ? nullptr : FilesWrapper::Open(path, mode, sharing);
  }
};

TEST(New, BlamesTheCitiesOnlyWhereTheyAreMissing) {
  const TempFolder folder;
  const std::string demo = (folder.Path() / "demo").string();
  ASSERT_EQ(RunPairwise({"demo", demo}).code, 0);
  std::istringstream nobody;
  std::ostringstream out;
  const CommandLine line{{nobody, out, out}, demo, {}};
  std::string why;
  WithWritingRun(line, false, [&](EngineRun& run) {
    Platform platform = CurrentPlatform();
    ClosedFiles files(*platform.files);
    platform.files = &files;
    const Platform previous = SetPlatform(platform);
    const auto made = MakeCalendar(run, "C:\\Data\\Ben");
    SetPlatform(previous);
    if (!made) why = made.Why().message;
    return 1;
  });
  EXPECT_EQ(why, demo + "/data/BenEVEN.WMW: could not be made");
  fs::remove(folder.Path() / "demo/data/cityinfo.dat");
  EXPECT_TRUE(Has(RunPairwise({"-p", demo, "new", "calendar", "Ben"}).messages,
                  "a calendar needs the cities of the organiser"));
}

}  // namespace
}  // namespace pw
