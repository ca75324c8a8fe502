#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/end_to_end/process.h"
#include "tests/end_to_end/sample.h"
#include "tests/end_to_end/terminal.h"

namespace pw {
namespace {

namespace fs = std::filesystem;
using testing::IsSubstring;

constexpr const char* kProduct = "4000 = 'SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main'\n";

// A profile with another folder of data beside the one that it names.
class OptionsTest : public testing::Test {
 protected:
  OptionsTest() {
    for (const char* file : {"CALL.WMW", "CSCA.WMW", "EVEN.WMW", "INIT.WMW", "RECR.WMW", "TASK.WMW",
                             "x.WMCard", "x.WMContent", "x.WMNoteHeader", "x.WMWrite"}) {
      sample.folder.Put(std::string("c/New/") + file, "");
    }
    sample.folder.Put("c/New/BoEVEN.WMW", "");
    sample.folder.Put("c/Data/AdaEVEN.WMW", "");
    sample.folder.Put("profile.toml", Description("C:\\Data", "Ada"));
    sample.folder.Put("registry.reg",
                      sample.folder.Get("registry.reg") +
                          "\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Gullwing\\PairWise Desktop\\Version "
                          "1\\Install]\r\n\"InstallDir\"=\"C:\\\\Org\\\\\"\r\n");
    before = Content();
  }

  static std::string Description(const std::string& folder, const std::string& calendar,
                                 const std::string& above = "", const std::string& added = "") {
    return above + "codepage = 1252\n[drives]\nC = 'c' # my disk\n[config] # kept\n" + added +
           "2 = '" + folder + "'\n5 = '" + calendar + "'\n" + kProduct;
  }

  std::map<std::string, std::string> Content() const {
    std::map<std::string, std::string> content;
    for (const auto& entry : fs::recursive_directory_iterator(sample.folder.Path())) {
      if (!entry.is_regular_file() || entry.path().extension() == ".lock") continue;
      const std::string name = entry.path().lexically_relative(sample.folder.Path()).string();
      content[name] = sample.folder.Get(name);
    }
    return content;
  }

  Finished Answer(const std::string& command, const std::string& answers) const {
    sample.folder.Put("answers.toml", answers);
    Finished run = RunPairwise(
        {"-p", sample.Folder(), command, "--answers", sample.Folder() + "/answers.toml"});
    fs::remove(sample.folder.Path() / "answers.toml");
    return run;
  }

  Finished Type(const std::string& command, const std::string& lines) const {
    return RunAtTerminal({"-p", sample.Folder(), command}, lines);
  }

  // That of all files the description alone has changed, into this.
  void ExpectDescription(const std::string& description) {
    auto after = Content();
    EXPECT_EQ(after["profile.toml"], description);
    after["profile.toml"] = before["profile.toml"];
    EXPECT_EQ(after, before);
  }

  Sample sample;
  std::map<std::string, std::string> before;
};

TEST_F(OptionsTest, AnswersSettleBothPagesAndAreSavedInTheDescription) {
  const Finished run = Answer("options",
                              "[synchronize]\nmode = 'overwrite-next'\nsure = true\n"
                              "[folder]\nbrowse = 'C:\\New\\'\ncalendar = 'Bo'\n");
  EXPECT_EQ(run.code, 0);
  EXPECT_EQ(run.messages,
            "pairwise: PairWise Desktop: You will need to re-map your categories in the Data "
            "Contacts, Calendar, To Do List, and Memos dialogs.\nsaved in " +
                sample.Folder() +
                "/profile.toml: data folder C:\\New, calendar Bo, sync overwrite-next\n"
                "categories there: 1 contact, 1 calendar, 1 todo\n");
  ExpectDescription(Description("C:\\New", "Bo", "sync = 'overwrite-next'\n"));
  const Finished categories = RunPairwise({"-p", sample.Folder(), "categories", "calendar"});
  EXPECT_PRED_FORMAT2(IsSubstring, "C:\\New\\Bo", categories.out);

  EXPECT_EQ(Answer("options", "[synchronize]\nsure = true\n").messages, "nothing has changed\n");
  EXPECT_EQ(Answer("options", "[synchronize]\nmode = 'on'\n").code, 0);
  ExpectDescription(Description("C:\\New", "Bo", "sync = 'on'\n"));
}

TEST_F(OptionsTest, AnswersThatCanNotBeGivenSaveNothing) {
  const struct {
    const char* command;
    const char* answers;
    const char* message;
  } cases[] = {
      {"options", "[synchronize]\nmode = 'overwrite-always'\n",
       "`sure = true` in [synchronize] answers"},
      {"options", "[folder]\nbrowse = 'C:\\Data'\n",
       "answers.toml:2: C:\\Data lacks: CALL.WMW, CSCA.WMW, EVEN.WMW, INIT.WMW, RECR.WMW, "
       "TASK.WMW, a .WMContent file, a .WMNoteHeader file, a .WMWrite file.; nothing was saved"},
      {"options", "[folder]\nbrowse = 'C:\\None'\n", "There is no folder C:\\None."},
      {"options", "[folder]\nbrowse = '\\tmp'\n", "is on none of the profile's drives: C:"},
      {"options", "[folder]\nfolder = 'D:\\New'\n", "D:\\New: not on one of the drives"},
      {"options", "[folder]\nfolder = ''\n", "no data folder: not on one"},
      {"options", "[folder]\ncalendar = 'A/B'\n",
       "calendar 'A/B': a name holds none of / \\ ? * | : < > \", and isn't empty; nothing was"},
      {"options", "[setup]\nfolder = 'C:\\New'\n", "answers.toml:1: there is no page 'setup' here"},
      {"setup", "[setup]\nfolder = '\\New'\n", "\\New: not on one of the drives"},
  };
  for (const auto& c : cases) {
    const Finished run = Answer(c.command, c.answers);
    EXPECT_EQ(run.code, 1) << c.answers;
    EXPECT_PRED_FORMAT2(IsSubstring, c.message, run.messages);
    EXPECT_EQ(Content(), before) << c.answers;
  }
}

TEST_F(OptionsTest, WithoutATerminalOrAnswersThereIsNobodyToAsk) {
  for (const char* command : {"options", "setup"}) {
    const Finished run = RunPairwise({"-p", sample.Folder(), command}, "\n\n");
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.messages,
              "pairwise: nobody is there to be asked; give the answers by --answers FILE\n");
  }
  EXPECT_EQ(Content(), before);
}

TEST_F(OptionsTest, ATypedFolderIsTakenWithoutATestAndWarnedOf) {
  sample.folder.Put("backups/2026-11-25T21-49-01/Friends.WMCard", "");
  before = Content();
  const Finished run = Answer("options", "[folder]\nfolder = 'C:\\Later\\'\n");
  EXPECT_EQ(run.code, 0);
  EXPECT_PRED_FORMAT2(IsSubstring, "c/Later: there is no such folder\n", run.messages);
  EXPECT_PRED_FORMAT2(IsSubstring, "backups that were made before may be of another ",
                      run.messages);
  ExpectDescription(Description("C:\\Later", "Ada"));
  std::string description = Description("C:\\Later", "Ada");
  description.insert(description.find("[config]"), "'C:\\New' = 'c/New'\n");
  sample.folder.Put("profile.toml", description);
  EXPECT_PRED_FORMAT2(IsSubstring, "/c/New: has calendar or to-do files, but none of 'Ada'",
                      Answer("options", "[folder]\nfolder = 'C:\\New'\ncalendar = 'Ada'").messages);
}

// Where the description names no calendar the module goes by the registry, folder and all.
TEST_F(OptionsTest, ACalendarWithoutANameIsNamedInTheRegistry) {
  const Finished run = Answer("options", "[folder]\nbrowse = 'C:\\New'\ncalendar = ''\n");
  EXPECT_EQ(run.code, 0) << run.messages;
  EXPECT_PRED_FORMAT2(IsSubstring, "can not be left empty", run.messages);
  EXPECT_PRED_FORMAT2(IsSubstring, "calendar without a name", run.messages);
  EXPECT_PRED_FORMAT2(IsSubstring, "\"DefUserName\"=\"C:\\\\New\\\\\"",
                      sample.folder.Get("registry.reg"));
  const Finished categories = RunPairwise({"-p", sample.Folder(), "categories"});
  EXPECT_PRED_FORMAT2(IsSubstring, "\tC:\\New\\\n", categories.out);
}

// The wizard's page asks for neither, and the registry knows of no install folder.
TEST_F(OptionsTest, SetupKeepsTheDefaultUserAndTheInstallFolder) {
  sample.folder.Put("profile.toml", Description("C:\\Data", "Ada", "", "3 = 'C:\\Old'\n"));
  ASSERT_EQ(Answer("options", "[folder]\nbrowse = 'C:\\New'\ncalendar = ''\n").code, 0);
  std::string registry = sample.folder.Get("registry.reg");
  registry.replace(registry.find("\"C:\\\\New\\\\\""), 11, "\"C:\\\\New\\\\Bo\"");
  registry.replace(registry.find("InstallDir"), 10, "Unknown");
  sample.folder.Put("registry.reg", registry);

  const Finished run = Answer("setup", "[setup]\nfolder = 'C:\\Data'\n");
  EXPECT_EQ(run.code, 0) << run.messages;
  EXPECT_PRED_FORMAT2(IsSubstring, "\"DefUserName\"=\"C:\\\\Data\\\\Bo\"",
                      sample.folder.Get("registry.reg"));
  EXPECT_PRED_FORMAT2(IsSubstring, "but none of 'Bo'", run.messages);
  EXPECT_EQ(sample.folder.Get("profile.toml"), Description("C:\\Data", "", "", "3 = 'C:\\Old'\n"));

  const Finished missing = Answer("setup", "[setup]\nfolder = 'C:\\Later'\n");
  EXPECT_EQ(missing.code, 0);
  EXPECT_PRED_FORMAT2(IsSubstring, "c/Later: there is no such folder\n", missing.messages);
}

TEST_F(OptionsTest, AtATerminalThePagesAreShownAndWorked) {
  // The fourth mode, but not sure; the first; the browser, once with a folder that lacks files; of
  // the calendars the second.
  const Finished run = Type("options", "4\n\nn\n1\n\n2\nC:\\Data\nC:\\New\n3\n2\n\n\n");
  EXPECT_EQ(run.code, 0) << run.out;
  for (const char* shown :
       {"\nPairWise Desktop Options, page 1 of 2\n\n  PairWise Desktop\n  PairWise Version 0.",
        "\n\n  1  ( ) Do not synchronize\n  2  (*) Synchronize\n  3  ( ) Delete and overwrite ",
        "to delete all your PairWise Desktop\ndata, then overwrite it?\nyes, no, Enter for no: ",
        "\n> 2  ( ) Synchronize\n  3  ( ) Delete and overwrite during next synchronization\n"
        "  4  (*) Always delete and overwrite\n",
        "\n  1  PairWise Desktop folder:  C:\\Data\n  2  <Browse...>\n"
        "  3  Calendar/task name:       Ada\n",
        "C:\\Data lacks: CALL.WMW, ", "  1  (*) Bo\n  2  ( ) (empty)\nNumber to choose"}) {
    EXPECT_PRED_FORMAT2(IsSubstring, shown, run.out);
  }
  EXPECT_PRED_FORMAT2(IsSubstring, "calendar without a name, sync off\n", run.out);
}

TEST_F(OptionsTest, LeavingInAnyOtherWaySavesNothing) {
  for (const char* lines : {"1\nc\n", "1\n\n1\nC:\\New\nc\n", "1\n\n", ""}) {
    const Finished run = Type("options", lines);
    EXPECT_EQ(run.code, 1) << run.out;
    EXPECT_PRED_FORMAT2(IsSubstring, "cancelled, nothing was saved\n", run.out);
    EXPECT_EQ(Content(), before);
  }
  EXPECT_PRED_FORMAT2(IsSubstring, "nothing has changed\n", Type("options", "\n\n").out);
  EXPECT_EQ(Content(), before);
}

TEST_F(OptionsTest, SetupTakesTheFoldersAndTellsWhatIsThere) {
  const Finished typed = Type("setup", "2\nC:\\New\n\n");
  EXPECT_EQ(typed.code, 0) << typed.out;
  for (const char* shown :
       {"\nPairWise Desktop Setup\n\n", "  Please choose the folder where your PairWise Desktop ",
        "  1  PairWise Desktop folder:  C:\\Org\\UserData\n", "install folder C:\\Org\n",
        "categories there: 1 contact"}) {
    EXPECT_PRED_FORMAT2(IsSubstring, shown, typed.out);
  }
  ExpectDescription(Description("C:\\New", "Ada", "", "3 = 'C:\\Org'\n"));
  const Finished answered = Answer("setup", "[setup]\nfolder = 'C:\\Data\\'\n");
  EXPECT_EQ(answered.code, 0);
  EXPECT_PRED_FORMAT2(IsSubstring, "categories there: 1 contact", answered.messages);
  ExpectDescription(Description("C:\\Data", "Ada", "", "3 = 'C:\\Org'\n"));
}

}  // namespace
}  // namespace pw
