#include "host/drive.h"

#include <algorithm>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/crc32.h"
#include "base/process_wide.h"
#include "framework/crc.h"
#include "framework/engine_context.h"
#include "platform/testing/fake_clock.h"
#include "platform/testing/scripted_dialogs.h"

namespace pw {
namespace {

// A source of one field "N", whose records are numbered from 1, and what was done to it.
class FakeSource : public PWSource {
 public:
  FakeSource(PWSourceManager* manager, std::vector<std::string>& done)
      : PWSource(manager, 2), done(done) {}
  ~FakeSource() override { done.emplace_back("gone"); }

  PWRESULT OpenSource() override {
    done.push_back("open " + Category->Location.Str());
    return Category->Location == "missing" ? kResultFileMissing : kResultOk;
  }
  PWRESULT CloseSource() override {
    done.emplace_back("close");
    return Category->Location == "full disk" ? kResultFailed : kResultOk;
  }
  PWRESULT AddRecord(PWRecord& record) override {
    const PWString* value = record.FindField("N");
    records.push_back(value == nullptr ? "" : value->Str());
    current = records.size() - 1;
    return kResultOk;
  }
  PWRESULT UpdateRecord(PWRecord& record) override {
    const PWString* value = record.FindField("N");
    if (value != nullptr) records.at(current) = value->Str();
    return kResultOk;
  }
  PWRESULT DeleteRecord() override { return kResultFailed; }
  PWRESULT ReadRecord(PWRecord* record) override {
    if (current >= records.size()) return kResultFailed;
    record->SetField("N", records[current]);
    return kResultOk;
  }
  std::uint32_t RecordCount() override { return static_cast<std::uint32_t>(records.size()); }
  PWString& RecordID() override {
    id = static_cast<std::int32_t>(current + 1);
    return id;
  }
  PWDateTimeStamp& RecordTimeStamp() override { return stamp; }
  std::uint32_t RecordCRC() override { return 0xFFFFFFFE; }
  PWRESULT FirstRecord() override {
    current = 0;
    return records.empty() ? kResultFailed : kResultOk;
  }
  PWRESULT NextRecord() override {
    if (current < records.size()) ++current;
    return current < records.size() ? kResultOk : kResultFailed;
  }
  PWRESULT FindRecord(const char* wanted) override {
    return RecordID() == wanted ? kResultOk : kResultFailed;
  }
  PWRESULT GetField(std::int32_t index, PWField& out) override {
    if (index != 0) return kResultFailed;
    out.SetText("value");
    return kResultOk;
  }
  PWRESULT SetField(std::int32_t index, PWField& value) override {
    if (index != 0) return kResultFailed;
    done.push_back("set " + value.text.Str());
    return kResultOk;
  }
  std::int32_t FindField(const char* name) override { return PWString(name) == "N" ? 0 : -1; }

 private:
  std::vector<std::string>& done;
  std::vector<std::string> records = {"one", "two"};
  std::size_t current = 5;
  PWString id;
  PWDateTimeStamp stamp{65535, 200, 31, 23, 59, 60};
};

// A sheet with one list, as a source manager may show it.
class ListPage : public CPropertyPage {
 public:
  ListPage() { controls = {{7, ControlKind::kList, "", {"same", "same"}, false, {}}}; }
  std::string Caption() override { return "Pick"; }
  void Press(std::int32_t control) override {
    chosen = std::to_string(*Control(control)->selected) + " of " + std::to_string(control);
  }
  std::string Chosen() { return chosen; }

 private:
  std::string chosen;  // as the page was told
};

class FakeManager : public PWSourceManager {
 public:
  explicit FakeManager(Dialogs& dialogs) : PWSourceManager(0), dialogs(dialogs) {}

  const PWString& Name() override { return name; }
  PWSource* CreateSource(const char* type) override {
    const bool known = PWString(type) == "contact" || PWString(type) == "timezone";
    return known ? new FakeSource(this, done) : nullptr;
  }
  void GetTypes(PWStringVector& out) override {
    for (const char* type : {"contact", "todo", "timezone"}) out.AppendText(type);
  }
  std::uint32_t ReservedFlag() override { return 0; }
  PWRESULT AddSetupPages(CPropertySheet* /*sheet*/) override { return kResultOk; }
  PWRESULT AddExtraSetupPages(CPropertySheet* /*sheet*/) override { return kResultOk; }
  bool IsSharedCategory(const char* type) override { return PWString(type) == "todo"; }
  PWRESULT ListCategories(const char* type, PWSourceCategoryVector& out) override {
    if (!(PWString(type) == "contact")) return kResultFailed;
    for (const char* each : {"a", "\x80"}) {
      auto category = std::make_unique<PWSourceCategory>();
      category->Name = each;
      category->Location = each;
      out.Append(category.release(), false);
    }
    return kResultOk;
  }
  PWRESULT NewCategory(const char* /*name*/, const char* /*type*/, PWString* location) override {
    CPropertySheet sheet("Template");
    auto page = std::make_unique<ListPage>();
    ListPage* shown = page.get();
    sheet.AddPage(std::move(page));
    const SheetAnswer answer = dialogs.ShowSheet(kNoWindow, sheet);
    *location = answer == SheetAnswer::kOk ? shown->Chosen() : "cancelled";
    return answer == SheetAnswer::kOk ? kResultOk : kResultFailed;
  }
  PWRESULT DeleteAllData() override {
    dialogs.ShowMessage(kNoWindow, "", "Really?", kBoxYesNo);
    Log->Addf("gone: %s", kLogWarning, "\xFC");
    return kResultOk;
  }

  std::vector<std::string> done;

 private:
  Dialogs& dialogs;
  PWString name = "Fake";
};

class FakeImport : public PWImportManager {
 public:
  PWRESULT GetImportPath(const char* /*type*/, PWString& out) override {
    out = path;
    return kResultOk;
  }
  PWRESULT SetImportPath(const char* newPath) override {
    path = newPath;
    return kResultOk;
  }
  PWRESULT PrepareImport(const char* /*type*/, PWStringVector& names) override {
    return names.Count() == 2 ? kResultOk : kResultFailed;
  }

 private:
  PWString path;
};

class DriveTest : public ::testing::Test {
 protected:
  DriveTest() {
    manager.Log = new CollectedLog(log);
    manager.Config = &config;
    RegisterTypes(objects);
  }
  ~DriveTest() override { ResetProcessWideState(); }

  // Each pair is a line and its answer.
  using Talk = std::vector<std::pair<std::string, std::string>>;
  void Expect(const Talk& talk) {
    for (const auto& [line, answer] : talk) EXPECT_EQ(drive.Answer(line), answer) << line;
  }

  FakeClock realClock;
  SettableClock clock{realClock};
  ScriptedDialogs noDialogs;
  std::ostringstream messages;
  UnattendedDialogs dialogs{noDialogs, messages};
  std::vector<LogLine> log;
  PWConfig config;
  PWApplicationSource applicationSource;
  FakeManager manager{dialogs};
  FakeImport importManager;
  bool chain = false;
  EngineObjects objects{importManager, manager, config,  applicationSource,
                        log,           clock,   dialogs, [this](bool wanted) { chain = wanted; }};
  Drive drive{objects};
};

TEST_F(DriveTest, AnswersForTheManager) {
  Expect({
      {R"({"op":"name"})", R"({"name":"Fake"})"},
      {R"({"op":"installed"})", R"({"result":true})"},
      {R"({"op":"types"})", R"({"types":["contact","todo","timezone"]})"},
      {R"({"op":"launch"})", R"({"result":1})"},
      {R"({"op":"clearnames"})", R"({"result":0})"},
      {R"({"op":"config","id":5})", R"({"value":""})"},
      {R"({"op":"config","id":5,"value":"€"})", R"({"value":"€"})"},
      {R"({"op":"limit","type":"todo"})", R"({"result":-1})"},
      {R"({"op":"shared","type":"todo"})", R"({"result":true})"},
      {R"({"op":"categories","type":"contact"})",
       R"({"result":0,"categories":[{"name":"a","location":"a"},{"name":"€","location":"€"}]})"},
      {R"({"op":"categories","type":"memo"})", R"({"result":1,"categories":[]})"},
      {R"({"op":"deletecategory","type":"contact","location":"x"})", R"({"result":1})"},
      {R"({"op":"fieldnames","type":"contact","location":"x"})", R"({"result":1,"names":[]})"},
      {R"({"op":"importpath","path":"C:\\x"})", R"({"result":0})"},
      {R"({"op":"importpath","type":"contact"})", R"({"result":0,"path":"C:\\x"})"},
      {R"({"op":"importpath"})", R"({"result":0,"path":"C:\\x"})"},
      {R"({"op":"prepareimport","type":"contact","fields":["a","b"]})", R"({"result":0})"},
      {R"({"op":"window","chain":true})", "{}"},
      {R"({"op":"now","seconds":-5})", "{}"},
      {R"({"op":"ticks","value":-1})", "{}"},
  });
  EXPECT_EQ(config.String(5).Str(), "\x80");
  EXPECT_TRUE(chain);
  EXPECT_EQ(clock.Now(), -5);
  EXPECT_EQ(clock.Ticks(), 0xFFFFFFFF);
  EXPECT_FALSE(drive.IsUnclean());
}

TEST_F(DriveTest, TakesTheSafeAnswerAndGivesTheLogOnce) {
  Expect({
      {R"({"op":"deleteall"})", R"({"result":0})"},
      {R"({"op":"log"})", R"({"log":[{"image":9,"text":"gone: ü"}]})"},
      {R"({"op":"log"})", R"({"log":[]})"},
  });
  EXPECT_EQ(messages.str(), "pairwise: \"Really?\" was answered by No\n");
  EXPECT_TRUE(noDialogs.boxes.empty());
}

TEST_F(DriveTest, ChoosesTheTemplateThatTheLineNames) {
  const std::string call = R"({"op":"newcategory","type":"contact","name":"x")";
  Expect({
      {call + R"(,"template":1})", R"({"result":0,"location":"1 of 7"})"},
      {call + R"(,"template":2})", R"({"result":1,"location":"cancelled"})"},
      {call + R"(,"template":-1})", R"({"result":1,"location":"cancelled"})"},
      {call + "}", R"({"result":1,"location":"cancelled"})"},
  });
}

TEST_F(DriveTest, PairsTheCategoriesOfARunAsLastListed) {
  Expect({
      {R"({"op":"categories","type":"contact"})",
       R"({"result":0,"categories":[{"name":"a","location":"a"},{"name":"€","location":"€"}]})"},
      {R"({"op":"syncing","types":["timezone","contact"]})", "{}"},
  });
  std::vector<std::string> taking;
  for (PWApplicationType* type = PWApplication::FirstType(); type != nullptr;
       type = PWApplication::NextType()) {
    if (type->IsSyncing()) taking.push_back(type->Name().Str());
    PWAppSrcTypeInfo* info = applicationSource.FindTypeInfo(type->Name());
    ASSERT_EQ(info->Categories.Count(), type->CategoryVector().Count());
    for (std::uint32_t i = 0; i < info->Categories.Count(); ++i) {
      const PWSourceCategory& engine = *type->CategoryVector().At(i);
      EXPECT_NE(engine.AppID, 0U);
      const PWSourceCategory* pair = info->Categories.FindByAppID(engine.AppID);
      ASSERT_NE(pair, nullptr);
      EXPECT_EQ(pair->Location.Str(), engine.Location.Str());
    }
  }
  EXPECT_EQ(taking, (std::vector<std::string>{"contact", "timezone"}));
  EXPECT_EQ(applicationSource.FindTypeInfo("contact")->Categories.Count(), 2U);
}

TEST_F(DriveTest, WalksAndChangesASource) {
  Expect({
      {R"({"op":"open","type":"contact","location":"C:\\x"})", R"({"result":0})"},
      {R"({"op":"count"})", R"({"count":2})"},
      {R"({"op":"read"})", R"({"result":1})"},
      {R"({"op":"first"})", R"({"result":0})"},
      {R"({"op":"id"})", R"({"id":"1"})"},
      {R"({"op":"stamp"})", R"({"stamp":"65535-200-31T23:59:60"})"},
      {R"({"op":"crc"})", R"({"crc":4294967294})"},
      {R"({"op":"next"})", R"({"result":0})"},
      {R"({"op":"read"})", R"({"result":0,"record":{"fields":[["N","two"]]}})"},
      {R"({"op":"update","record":{"fields":[["N","ü"]]}})", R"({"result":0})"},
      {R"({"op":"update","record":{}})", R"({"result":0})"},
      {R"({"op":"read"})", R"({"result":0,"record":{"fields":[["N","ü"]]}})"},
      {R"({"op":"add","record":{"fields":[["Other","x"]]}})", R"({"result":0})"},
      {R"({"op":"find","id":"3"})", R"({"result":0})"},
      {R"({"op":"delete"})", R"({"result":1})"},
      {R"({"op":"findfield","name":"N"})", R"({"index":0})"},
      {R"({"op":"findfield","name":"n"})", R"({"index":-1})"},
      {R"({"op":"getfield","index":0})", R"({"result":0,"text":"value"})"},
      {R"({"op":"getfield","index":-7})", R"({"result":1,"text":""})"},
      {R"({"op":"setfield","index":0,"text":"\u0081"})", R"({"result":0})"},
      {R"({"op":"close"})", R"({"result":0})"},
  });
  EXPECT_FALSE(drive.IsUnclean());
  EXPECT_EQ(manager.done, (std::vector<std::string>{"open C:\\x", "set \x81", "close", "gone"}));
}

TEST_F(DriveTest, GeneratesCrcsOfTextsStampsAndBytes) {
  const auto crc = [](std::uint32_t value) { return "{\"crc\":" + std::to_string(value) + "}"; };
  const PWDateTimeStamp stamp(1999, 1, 2, 3, 4, 5);
  Expect({
      {R"({"op":"open","type":"contact","location":"x"})", R"({"result":0})"},
      {R"({"op":"generatecrc","crc":0,"bytes":[49,50,51,52,53,54,55,56,57]})", crc(0xCBF43926)},
      {R"({"op":"generatecrc","crc":7,"bytes":[]})", crc(7)},
      {R"({"op":"generatecrc","crc":0,"bytes":[0,255]})",
       crc(Crc32(0, std::string_view("\0\xFF", 2)))},
      {R"({"op":"generatecrc","crc":4294967295,"text":"ü"})", crc(FoldText(0xFFFFFFFF, "\xFC"))},
      {R"({"op":"generatecrc","crc":1,"stamp":"1999-01-02T03:04:05"})", crc(FoldStamp(1, stamp))},
      {R"({"op":"close"})", R"({"result":0})"},
      {R"({"op":"generatecrc","crc":0,"text":""})", R"({"error":"no source is open"})"},
  });
}

TEST_F(DriveTest, HasOneSourceOrNone) {
  Expect({
      {R"({"op":"open","type":"contact","location":"missing"})", R"({"result":7})"},
      {R"({"op":"first"})", R"({"error":"no source is open"})"},
      {R"({"op":"open","type":"contact","location":"full disk"})", R"({"result":0})"},
      {R"({"op":"close"})", R"({"result":1})"},
      {R"({"op":"close"})", R"({"error":"no source is open"})"},
      {R"({"op":"open","type":"memo","location":"x"})",
       R"({"error":"there is no source for type \"memo\""})"},
      {R"({"op":"open","type":"contact"})", R"({"error":"\"location\" is missing"})"},
      {R"({"op":"open","type":"timezone","location":5})", R"({"result":0})"},
      {R"({"op":"open","type":"contact","location":"x"})",
       R"({"error":"a source is already open"})"},
      {R"({"op":"read"})", R"({"result":1})"},
  });
  EXPECT_TRUE(drive.IsUnclean());
}

TEST_F(DriveTest, SaysWhatIsWrongWithALineAndDoesNothing) {
  Expect({{R"({"op":"open","type":"contact","location":"x"})", R"({"result":0})"}});
  const std::string lines[] = {
      "",
      "nonsense",
      "[]",
      "{}",
      "{\"op\":5}",
      "{\"op\":\"fly\"}",
      "{\"op\":\"name\"} {\"op\":\"name\"}",
      "{\"op\":\"\xFF\"}",
      std::string("{\"op\":\"close\"}\0x", 15),
      R"({"op":"generatecrc","crc":0})",
      R"({"op":"generatecrc","crc":0,"bytes":[256]})",
      R"({"op":"generatecrc","crc":0,"bytes":"x"})",
      R"({"op":"generatecrc","text":"x"})",
      R"({"op":"now"})",
      R"({"op":"now","seconds":2147483648})",
      R"({"op":"now","seconds":1.5})",
      R"({"op":"now","seconds":"1"})",
      R"({"op":"ticks","value":4294967296})",
      R"({"op":"ticks","value":18446744073709551616})",
      R"({"op":"window","chain":1})",
      R"({"op":"config","id":5,"value":"一"})",
      R"({"op":"config","id":5,"value":"a\u0000b"})",
      R"({"op":"syncing","types":["memo"]})",
      R"({"op":"syncing","types":"contact"})",
      R"({"op":"setfield","index":99999999999999999999,"text":""})",
      R"({"op":"setfield","index":0,"text":null})",
      R"({"op":"add"})",
      R"({"op":"add","record":[]})",
      R"({"op":"add","record":{"fields":{"N":"x"}}})",
      R"({"op":"add","record":{"fields":[["N"]]}})",
      R"({"op":"add","record":{"fields":[["N","一"]]}})",
      "{\"op\":" + std::string(1'000'000, '['),
      std::string(1'000'000, '{'),
  };
  for (const std::string& line : lines) {
    const std::string answer = drive.Answer(line);
    EXPECT_EQ(answer.rfind("{\"error\":\"", 0), 0U) << line.substr(0, 80) << " gave " << answer;
    EXPECT_EQ(answer.find('\n'), std::string::npos);
  }
  Expect({{R"({"op":"count"})", R"({"count":2})"}, {R"({"op":"close"})", R"({"result":0})"}});
  EXPECT_TRUE(drive.IsUnclean());
}

TEST_F(DriveTest, AnswersEveryLineOfItsInput) {
  std::istringstream in("{\"op\":\"name\"}\r\n" + std::string((16 << 20) + 1, ' ') +
                        "\n{\"op\":\"installed\"}");
  std::ostringstream out;
  EXPECT_EQ(RunDrive(objects, in, out), 1);
  EXPECT_EQ(out.str(), "{\"name\":\"Fake\"}\n{\"error\":\"line too long\"}\n{\"result\":true}\n");

  std::istringstream left("{\"op\":\"open\",\"type\":\"contact\",\"location\":\"x\"}\n");
  EXPECT_EQ(RunDrive(objects, left, out), 1);
  EXPECT_EQ(manager.done, (std::vector<std::string>{"open x", "gone"}));

  std::istringstream clean("{\"op\":\"name\"}\n");
  EXPECT_EQ(RunDrive(objects, clean, out), 0);
}

}  // namespace
}  // namespace pw
