#include <algorithm>
#include <filesystem>
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/end_to_end/process.h"
#include "tests/end_to_end/sample.h"
#include "tests/platform/temp_folder.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

// Two samples: one to take records from, one to bring them to.
class ImportTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder = new TempFolder;
    for (const char* name : {"from", "to"}) {
      const Finished made = RunPairwise({"demo", (folder->Path() / name).string()});
      ASSERT_EQ(made.code, 0) << made.messages;
    }
  }
  static void TearDownTestSuite() { delete folder; }

  static Finished Run(const char* profile, std::vector<std::string> words) {
    words.insert(words.begin(), {"-p", (folder->Path() / profile).string()});
    return RunPairwise(words);
  }
  static std::string Exported(const std::string& type, const std::string& format) {
    std::string file = (folder->Path() / (type + "." + format)).string();
    const Finished run = Run("from", {"export", type, "--format", format, "-o", file});
    EXPECT_EQ(run.code, 0) << run.messages;
    return file;
  }

  // What the records of a type hold, without their ids, in an order of its own.
  static std::vector<std::string> Contents(const char* profile, std::vector<std::string> which) {
    which.insert(which.begin(), "export");
    std::vector<std::string> contents;
    for (auto& record : nlohmann::json::parse(Run(profile, which).out)) {
      record.erase("id");
      record.erase("changed");
      contents.push_back(record.dump());
    }
    std::sort(contents.begin(), contents.end());
    return contents;
  }

  // Has the profile work on the calendar of another stem.
  static void UseCalendar(const std::string& stem) {
    const std::string text = folder->Get("to/profile.toml");
    folder->Put("to/profile.toml",
                std::regex_replace(text, std::regex("\n5 = '[^']*'"), "\n5 = '" + stem + "'"));
  }

  static TempFolder* folder;
};

TempFolder* ImportTest::folder = nullptr;

TEST_F(ImportTest, OfAnExportGivesTheSameRecords) {
  for (const std::string format : {"json", "csv", "vcf"}) {
    SCOPED_TRACE(format);
    ASSERT_EQ(Run("to", {"new", "contact", "New " + format, "--template", "people"}).code, 0);
    const Finished run = Run(
        "to", {"import", "contact", Exported("contact", format), "--category", "New " + format});
    EXPECT_EQ(run.out, "40 records added\n") << run.messages;
    EXPECT_EQ(WithoutBackupLines(run.messages), "");
    EXPECT_EQ(Contents("to", {"contact", "New " + format}), Contents("from", {"contact"}));
  }
  for (const std::string format : {"json", "csv"}) {
    SCOPED_TRACE(format);
    ASSERT_EQ(Run("to", {"wipe", "memo", "--yes"}).code, 0);
    const Finished run = Run("to", {"import", "memo", Exported("memo", format)});
    EXPECT_EQ(run.out, "6 records added\n") << run.messages;
    EXPECT_EQ(Contents("to", {"memo"}), Contents("from", {"memo"}));
  }
  for (const std::string format : {"json", "csv", "ics"}) {
    ASSERT_EQ(Run("to", {"new", "calendar", "New" + format}).code, 0);
    UseCalendar("New" + format);
    for (const std::string type : {"todo", "calendar"}) {
      SCOPED_TRACE(testing::Message() << type << " " << format);
      const Finished run = Run("to", {"import", type, Exported(type, format)});
      EXPECT_EQ(run.code, 0) << run.messages;
      EXPECT_EQ(Contents("to", {type}), Contents("from", {type}));
    }
  }
}

TEST_F(ImportTest, SetsHomeAndActiveOfTheClocks) {
  folder->Put("clocks.csv",
              "id,City,State,Country,Home,Active\r\n0,London,,Britain (UK),yes,\r\n"
              "1,New York,NY,USA,,yes\r\n");
  const Finished run = Run("to", {"import", "timezone", (folder->Path() / "clocks.csv").string()});
  EXPECT_EQ(run.out, "0 records added, 2 updated\n") << run.messages;
  const auto records = nlohmann::json::parse(Run("to", {"export", "timezone"}).out);
  EXPECT_EQ(records[0]["record"]["Home"], true);
  EXPECT_EQ(records[1]["record"]["Home"], false);
  EXPECT_EQ(records[1]["record"]["Active"], true);
}

// A file, and what is said of it.
struct Said {
  const char* name;
  const char* type;
  std::string text;
  int code;
  const char* out;
  std::vector<std::string> messages;  // each occurs
};

std::string ManyWrong() {
  std::string text = "[";
  for (int i = 0; i < 150; ++i) text += i == 0 ? "1" : ",1";
  return text + "]";
}

TEST_F(ImportTest, TellsOfEachRecordWhatDoesNotComeAlong) {
  const std::string longText(70'000, 'x');
  const Said cases[] = {
      {"a.csv",
       "contact",
       "id,Last Name,Shoe,Street\r\n,Ødegård,44,\"1 Road\r\nTown\"\r\n,Ж,,\r\n",
       0,
       "2 records added, 2 of them changed\n",
       {"record 1 (Ødegård): there is no field \"Shoe\" for it", "Street is in one line now",
        "record 2 (?): Last Name has characters that the organiser lacks"}},
      {"b.json",
       "contact",
       R"([{"fields":[["Phone","1"],["Phone","2"]]}])",
       0,
       "1 record added, 1 of them changed\n",
       {"the second \"Phone\" is left out"}},
      {"c.json",
       "contact",
       "[{\"fields\":{\"Company\":\"" + longText + "\"}}]",
       4,
       "0 records added, 1 refused\n",
       {"65,535 bytes"}},
      {"d.json",
       "todo",
       R"([{"record":{"Subject":5}},{"id":"1"},{"record":{"Subject":"ok"}}])",
       4,
       "1 record added, 1 of them changed\n",
       {"record 1: \"Subject\" must be a text, and is left out",
        "record 2: ", "record 3 (ok): got today as its start"}},
      {"e.json",
       "memo",
       R"([{"category":"Nowhere","record":{"Subject":"x"}}])",
       4,
       "0 records added\n",
       {"there is no category 'Nowhere'"}},
      {"f.json", "todo", "{}", 4, "0 records added\n", {"no JSON array"}},
      // What is of another type, or holds nothing.
      {"h.json",
       "contact",
       R"([{"record":{"Subject":"x"}},{"fields":{}},{"fields":{"Shoe":"1"}},{"fields":[1]},
           {"name":1,"fields":{"Company":"ok"}}])",
       4,
       "1 record added, 1 of them changed, 2 refused\n",
       {"contact 1: it has no \"fields\"", "record 1: refused, as it holds nothing",
        "record 2: refused, as it holds nothing", "contact 4: expected two texts",
        "record 3 (ok): \"name\" is no member of a contact"}},
      {"i.csv",
       "todo",
       "Last Name,Company\r\nx,y\r\n",
       4,
       "0 records added\n",
       {"none of its headings is known; they would be \"Kind\", \"Subject\""}},
      {"j.csv",
       "contact",
       "id;Company\r\n1;x\r\n",
       4,
       "0 records added\n",
       {"none of its headings is known", "separated by commas, not semicolons"}},
      {"k.vcf",
       "contact",
       "BEGIN:VCARD\nEND:VCARD\n",
       4,
       "0 records added\n",
       {"line 1: a card that holds nothing"}},
      {"l.csv",
       "todo",
       "Kind,Subject,Note\r\ncall,,\r\n",
       4,
       "0 records added, 1 refused\n",
       {"record 1: refused, as it holds nothing"}},
      {"m.csv", "todo", "Subject\r\n", 4, "0 records added\n", {"/m.csv: holds no todo records"}},
      // Words that aren't those of the column, and columns that aren't the type's.
      {"n.csv",
       "todo",
       "SUBJECT,Priority,Done,Kind,Start,Shoe\r\nA,High,YES,Call,1998-03-02,1\r\n"
       "B,urgent,maybe,errand,soon,\r\n",
       0,
       "2 records added, 1 of them changed\n",
       {"the column \"Shoe\" isn't known",
        "record 2 (B): Priority \"urgent\" isn't \"high\" or \"normal\" or \"low\"",
        "Done \"maybe\" isn't \"yes\" or \"no\"", "Kind \"errand\" isn't \"call\" or \"task\"",
        "Start \"soon\" isn't a date", "record 2 (B): got today as its start"}},
      {"o.csv",
       "calendar",
       "Subject,Start,End,Alarm,Access\r\nA,1998-06-02 10:00,1998-06-02 11:00,soon,secret\r\n"
       "B,1998-06-03 10:00,1998-06-03 10:00,15 min after,\r\n",
       4,
       "1 record added, 1 of them changed, 1 refused\n",
       {"Alarm \"soon\" isn't \"15 min before\" or the like",
        "Access \"secret\" isn't \"personal\" or \"private\"",
        "record 2 (B): refused, as an event of the organiser's takes a minute at least"}},
      {"p.json",
       "memo",
       R"([{"category":"Notebook","x":1,"record":{"Subject":"a → b","Colour":"red"}}])",
       0,
       "1 record added, 1 of them changed\n",
       {"\"x\" isn't known beside a record", "\"Colour\" is no member of such a record",
        "Subject has characters that the organiser lacks"}},
      {"q.json", "memo", "[\n{\"record\":\n oops", 4, "0 records added\n", {"line 3: no JSON"}},
      {"r.csv",
       "contact",
       "Stra\xDF"
       "e,Company\r\n,Zo\xEB\x1B[31m\r\n",
       0,
       "1 record added\n",
       {}},
      {"s.csv",
       "contact",
       "Company,\x1B[31mred\r\nx,y\r\n",
       0,
       "1 record added, 1 of them changed\n",
       {"there is no field \"?[31mred\" for it"}},
      {"t.json",
       "memo",
       ManyWrong(),
       4,
       "0 records added\n",
       {"record 100: ", "and 50 more of this kind"}},
      {"g.ics",
       "calendar",
       "BEGIN:VCALENDAR\nBEGIN:VEVENT\nDTSTART:17000101T000000Z\nSUMMARY:old\nEND:VEVENT\n"
       "BEGIN:VEVENT\nDTSTART:nonsense\nEND:VEVENT\nEND:VCALENDAR\n",
       4,
       "",
       {"line 6: its times can't be read"}},
  };
  for (const Said& each : cases) {
    SCOPED_TRACE(each.name);
    folder->Put(each.name, each.text);
    std::vector<std::string> words = {"import", each.type, (folder->Path() / each.name).string()};
    if (each.type == std::string("contact")) words.insert(words.end(), {"--category", "Friends"});
    const Finished run = Run("to", words);
    EXPECT_EQ(run.code, each.code) << run.messages;
    EXPECT_EQ(run.out.substr(0, std::string(each.out).size()), each.out);
    for (const std::string& message : each.messages) {
      EXPECT_TRUE(Has(run.messages, message));
    }
    EXPECT_EQ(run.messages.find('\x1B'), std::string::npos) << "nothing steers the terminal";
  }
}

TEST_F(ImportTest, UpdatesByIdAndAddsTheRest) {
  const Sample sample;
  const std::string before = sample.folder.Get("c/Data/Friends.WMCard");
  const auto import = [&](const std::string& text, bool update) {
    sample.folder.Put("cards.csv", text);
    std::vector<std::string> words = {"import", "contact", sample.Folder() + "/cards.csv"};
    if (update) words.emplace_back("--update");
    return sample.Run(words);
  };
  EXPECT_EQ(import("id,Company\r\n7,Changed & Co\r\n9999,New Ltd\r\n", true).out,
            "1 record added, 1 updated\n");
  const std::string after = sample.Run({"list", "contact"}).out;
  EXPECT_TRUE(Has(after, "Changed & Co"));
  EXPECT_EQ(std::count(after.begin(), after.end(), '\n'), 5);

  // Cards that aren't all there would be lost with a save.
  sample.folder.Put("c/Data/Friends.WMCard", before.substr(0, 1500));
  const Finished refused = import("id,Company\r\n,Lost\r\n", false);
  EXPECT_EQ(refused.code, 4);
  EXPECT_TRUE(Has(refused.messages, "nothing is written to a damaged file"));
  EXPECT_EQ(sample.folder.Get("c/Data/Friends.WMCard"), before.substr(0, 1500));
}

// A file that brings nothing, or has nowhere to go, isn't worth a backup.
TEST_F(ImportTest, LooksAtTheFileBeforeItMakesABackup) {
  const Sample sample;
  sample.folder.Put("none.json", "[]");
  sample.folder.Put("wrong.csv", "a;b\r\n1;2\r\n");
  sample.folder.Put("some.csv", "Company\r\nx\r\n");
  const struct {
    const char* file;
    const char* category;
    int code;
  } cases[] = {{"none.json", "Friends", 4}, {"wrong.csv", "Friends", 4}, {"some.csv", "Work", 1}};
  for (const auto& each : cases) {
    SCOPED_TRACE(each.file);
    const Finished run = sample.Run(
        {"import", "contact", sample.Folder() + "/" + each.file, "--category", each.category});
    EXPECT_EQ(run.code, each.code) << run.messages;
    EXPECT_FALSE(Has(run.messages, "are in backup"));
    EXPECT_EQ(WithoutBackupLines(run.messages), run.messages);
  }
}

// What one calls in a wrong way, or without a word that is needed.
TEST_F(ImportTest, RefusesWhatCannotBeMeant) {
  const std::string contacts = Exported("contact", "json");
  const struct {
    std::vector<std::string> words;
    int code;
    const char* message;
  } cases[] = {
      {{"import", "contact", contacts, "--format", "ics"}, 2, "holds calendar and todo only"},
      {{"import", "memo", contacts, "--format", "vcf"}, 2, "holds contacts only"},
      {{"import", "contact", "/tmp/cards"}, 2, "--format FORMAT"},
      {{"import", "contact", "/nowhere.json"}, 1, "/nowhere.json: No such file"},
      {{"import", "contact", "/no\x1B[31mwhere\n.json"}, 1, "/no?[31mwhere .json: No such file"},
      {{"\x1B]0;title\x07"}, 2, "?]0;title?"},
      {{"new", "contact", "A/B"}, 2, "a name holds none of"},
      {{"new", "contact", "Friends", "--field", "x"}, 1, "is there already"},
      {{"new", "contact", "Unmade"}, 2, "which template? Give one as --template NAME"},
      {{"new", "contact", "Unmade", "--template", "Cats"},
       1,
       "there is no template 'Cats'; there is 'People', 'Club', 'Suppliers'\n"},
      {{"new", "calendar", "Ada"}, 1, "is there already"},
      {{"new", "todo", "Ada"}, 1, "is there already"},
      {{"new", "memo", "Notebook"}, 1, "is there already"},
      {{"new", "memo", "Unmade", "--field", "x"}, 2, "only a cardfile has"},
      {{"new", "timezone", "Mars"}, 2, "the clocks are always eight"},
      {{"remove", "contact", "Friends"}, 2, "--yes says so beforehand"},
      {{"remove", "memo", "Notebook"}, 2, "only a contact category can be removed"},
      {{"wipe", "memo"}, 2, "Delete all of memo (6 records)?"},
      {{"wipe", "timezone", "--yes"}, 2, "the clocks stay eight"},
      {{"wipe", "nothing", "--yes"}, 2, "nothing not in"},
      {{"remove", "nothing", "x"}, 2, "nothing not in"},
      {{"remove", "timezone", "x"}, 2, "the clocks stay eight"},
  };
  const auto files = [] {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder->Path() / "from/data")) {
      if (!entry.is_regular_file()) continue;
      names.push_back(entry.path().filename().string() + folder->Get(entry.path()));
    }
    std::sort(names.begin(), names.end());
    return names;
  };
  const auto before = files();
  for (const auto& each : cases) {
    SCOPED_TRACE(each.message);
    const Finished run = Run("from", each.words);
    EXPECT_EQ(run.code, each.code);
    EXPECT_TRUE(Has(run.messages, each.message));
  }
  EXPECT_EQ(files(), before);
}

TEST_F(ImportTest, MakesRemovesAndEmpties) {
  const TempFolder own;
  const std::string demo = (own.Path() / "demo").string();
  ASSERT_EQ(RunPairwise({"demo", demo}).code, 0);
  const auto run = [&](std::vector<std::string> words) {
    words.insert(words.begin(), {"-p", demo});
    return RunPairwise(words);
  };
  EXPECT_EQ(run({"new", "contact", "Shops", "--field", "Name", "--field", "Open"}).code, 0);
  EXPECT_EQ(own.Get("demo/data/Shops.WMCard").substr(0, 6), "WMW300");
  EXPECT_EQ(run({"new", "memo", "Ideas"}).out,
            demo + "/data/Ideas.WMWrite: section 'Ideas' is made\n");
  const std::string stem = demo + "/data/Ben";
  EXPECT_EQ(
      run({"new", "calendar", "Ben"}).out,
      stem + "Even.WMW is made\n" + stem + "Data.WMW is made\n" + stem + "Recr.WMW is made\n");
  EXPECT_EQ(run({"new", "todo", "Cleo"}).out,
            demo + "/data/CleoTASK.WMW is made\n" + demo + "/data/CleoCALL.WMW is made\n");
  EXPECT_EQ(run({"remove", "contact", "Shops", "--yes"}).code, 0);
  EXPECT_FALSE(fs::exists(demo + "/data/Shops.WMCard"));
  // A type without categories doesn't end the walk over those behind it.
  EXPECT_EQ(run({"wipe", "contact", "memo", "todo", "calendar", "--yes"}).out,
            "deleted; there is now contact (0 records), calendar (0 records), todo (0 records), "
            "memo (0 records)\n");
  fs::remove(demo + "/data/Friends.WMCard");
  EXPECT_EQ(run({"wipe", "contact", "memo", "--yes"}).out,
            "deleted; there is now memo (0 records)\n");
}

}  // namespace
}  // namespace pw
