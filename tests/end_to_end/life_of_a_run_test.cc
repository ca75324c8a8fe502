#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/end_to_end/process.h"
#include "tests/platform/temp_folder.h"

namespace pw {
namespace {

using Json = nlohmann::json;
using Lines = std::vector<std::string>;

Lines LinesOf(const std::string& text) {
  Lines lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// The sample, of which the engine's calls make use as a whole.
class LifeOfARunTest : public testing::Test {
 protected:
  LifeOfARunTest() {
    ::setenv("XDG_RUNTIME_DIR", folder.Path().c_str(), 1);
    const Finished made = RunPairwise({"demo", demo});
    EXPECT_EQ(made.code, 0) << made.messages;
    folder.Put("demo/data/Data/crdstyle.dat", "[Plain]Name\tPhone\r\n[Club]Member\tSince\r\n");
  }

  // The answers to calls, a line each.
  Lines Drive(const std::string& calls) const {
    const Finished driven = RunPairwise({"-p", demo, "drive"}, calls);
    EXPECT_EQ(driven.code, 0) << driven.messages << driven.out;
    return LinesOf(driven.out);
  }

  const TempFolder folder;
  const std::string demo = (folder.Path() / "demo").string();
};

// One type of a run: what is added, what it becomes by an update, and what is left of the first by
// then, as the cardfile's columns do that an update doesn't name.
struct Life {
  const char* type;
  const char* location;
  std::size_t count;
  Json added, updated, kept;
  std::string heard;  // of its files, by the organiser
};

// The engine, call by call, with what each is to answer.
class Engine {
 public:
  explicit Engine(const std::string& profile) : drive({"-p", profile, "drive"}) {}

  Json Call(const Json& call) {
    drive.Write(call.dump() + "\n");
    return Json::parse(drive.ReadLine());
  }
  int Result(const char* op, Json call = Json::object()) {
    call["op"] = op;
    return Call(call).value("result", -1);
  }
  Json Ask(const char* op, const char* answer) { return Call({{"op", op}}).at(answer); }
  void Open(const Life& life) {
    EXPECT_EQ(Result("open", {{"type", life.type}, {"location", life.location}}), 0) << life.type;
  }
  void Reopen(const Life& life) {
    EXPECT_EQ(Result("close"), 0) << life.type;
    Open(life);
  }
  // Every property that is named has its value; a cardfile's columns are pairs of name and value.
  void ExpectRecord(const Json& expected) {
    const Json read = Ask("read", "record");
    for (const auto& [name, value] : expected.items()) {
      const bool areColumns = name == "fields";
      EXPECT_TRUE(areColumns || read.at(name) == value) << name << ": " << read;
      for (const Json& column : areColumns ? value : Json()) {
        EXPECT_NE(std::count(read.at(name).begin(), read.at(name).end(), column), 0) << column;
      }
    }
  }
  int Finish() { return drive.Finish().code; }

 private:
  Process drive;
};

void Walk(Engine& engine, const Life& life) {
  EXPECT_EQ(engine.Ask("count", "count"), life.count) << life.type;
  std::set<std::string> ids;
  for (int at = engine.Result("first"); at == 0; at = engine.Result("next")) {
    ids.insert(engine.Ask("id", "id").get<std::string>());
    EXPECT_EQ(engine.Result("read"), 0);
  }
  EXPECT_EQ(ids.size(), life.count) << life.type;
}

// A record comes, is changed and goes, each time with the file.
void LiveOnce(Engine& engine, const Life& life) {
  SCOPED_TRACE(life.type);
  engine.Open(life);
  Walk(engine, life);
  EXPECT_EQ(engine.Result("add", {{"record", life.added}}), 0);
  const Json found = {{"id", engine.Ask("id", "id")}};
  engine.Reopen(life);
  EXPECT_EQ(engine.Result("find", found), 0);
  engine.ExpectRecord(life.added);
  EXPECT_EQ(engine.Result("update", {{"record", life.updated}}), 0);
  engine.Reopen(life);
  EXPECT_EQ(engine.Ask("count", "count"), life.count + 1);
  EXPECT_EQ(engine.Result("find", found), 0);
  engine.ExpectRecord(life.updated);
  engine.ExpectRecord(life.kept);
  EXPECT_EQ(engine.Result("delete"), 0);
  engine.Reopen(life);
  EXPECT_EQ(engine.Result("find", found), 1);
  Walk(engine, life);
  EXPECT_EQ(engine.Result("close"), 0);
}

// No clock comes or goes; it becomes the home clock in place of another.
void MoveHome(Engine& engine, const Life& life) {
  engine.Open(life);
  Walk(engine, life);
  EXPECT_EQ(engine.Result("add", {{"record", life.added}}), 1);
  EXPECT_EQ(engine.Result("find", {{"id", "0"}}), 0);
  engine.ExpectRecord(life.added);
  EXPECT_EQ(engine.Result("update", {{"record", life.updated}}), 0);
  EXPECT_EQ(engine.Result("delete"), 1);
  engine.Reopen(life);
  EXPECT_EQ(engine.Result("find", {{"id", "0"}}), 0);
  engine.ExpectRecord(life.updated);
  EXPECT_EQ(engine.Result("find", {{"id", "1"}}), 0);
  engine.ExpectRecord(life.kept);
  EXPECT_EQ(engine.Result("close"), 0);
}

Json Event(const char* subject, const char* location, int lead) {
  return {{"Subject", subject}, {"Location", location},
          {"Notes", "a\r\nb"},  {"StartDate", "1999-07-04T10:00:00"},
          {"AllDay", false},    {"EndDate", "1999-07-04T11:00:00"},
          {"Alarm", lead != 0}, {"AlarmAdvance", lead == 0 ? 15 : lead},
          {"Sensitivity", 2}};
}

Json Todo(const char* subject, const char* due, bool completed) {
  return {{"Call", true},         {"Subject", subject}, {"Note", "a\r\nb"},
          {"NoStartDate", false}, {"Priority", 2},      {"StartDate", "1999-06-30T00:00:00"},
          {"DueDate", due},       {"NoDueDate", false}, {"Completed", completed}};
}

Json City(const char* city, const char* country, bool home) {
  return {{"City", city}, {"Country", country}, {"Home", home}};
}

Json Fields(const char* name, const char* value) {
  return {{"fields", Json::array({Json::array({name, value})})}};
}

// The whole run, from the module's one function on: with sample data as a person has them first,
// and with an organiser beside it that is another process.
TEST_F(LifeOfARunTest, OfAllTypesBesideTheOrganiser) {
  const Life lives[] = {
      {"contact", "C:\\Data\\Friends.WMCard", 40, Fields("Last Name", "Zorn"),
       Fields("Company", "\u20AC Ltd"), Fields("Last Name", "Zorn"), ""},
      {"calendar", "C:\\Data\\Ada", 15, Event("New", "Zo\u00EB's", 15), Event("Newer", "", 0),
       Json::object(), "  Calendar      C:\\Data\\AdaEven.WMW\n"},
      {"todo", "C:\\Data\\Ada", 12, Todo("New", "1999-07-29T00:00:00", false),
       Todo("Newer", "1999-08-01T00:00:00", true), Json::object(),
       "  To Do         C:\\Data\\AdaTASK.WMW\n"},
      {"memo",
       "C:\\Data\\Notebook;Workshop",
       3,
       {{"Subject", "New"}, {"Body", "a\r\nb"}},
       {{"Subject", "Newer"}, {"Body", "c"}},
       Json::object(),
       "  Write Binder  C:\\Data\\Notebook.WMWrite\n"},
      {"timezone", "", 8, City("London", "Britain (UK)", false),
       City("London", "Britain (UK)", true), City("New York", "USA", false),
       "  Clocks        C:\\Data\\CLOCKS.DAT\n"},
  };
  Process organiser({"-p", demo, "organiser"});
  ASSERT_EQ(organiser.ReadLine(), "ready");
  Engine engine(demo);
  EXPECT_EQ(engine.Ask("name", "name"), "PairWise Desktop");
  const Json types = engine.Ask("types", "types");
  ASSERT_EQ(types.size(), std::size(lives));
  engine.Call({{"op", "now"}, {"seconds", 930787200}});
  for (const Life& life : lives) {
    EXPECT_EQ(std::count(types.begin(), types.end(), life.type), 1) << life.type;
    life.type == std::string("timezone") ? MoveHome(engine, life) : LiveOnce(engine, life);
  }
  EXPECT_EQ(engine.Ask("log", "log"), Json::array());
  EXPECT_EQ(engine.Finish(), 0);
  organiser.Signal(2);
  const std::string heard = organiser.Finish().out;
  for (const Life& life : lives) EXPECT_TRUE(Has(heard, life.heard));
  EXPECT_FALSE(Has(heard, "Cardfile"));
  EXPECT_FALSE(Has(heard, "step 3"));
  EXPECT_EQ(RunPairwise({"check", demo + "/data/Data"}).code, 0);
}

// What the module takes without keeping it, and what no record can be made of.
TEST_F(LifeOfARunTest, WhatIsNotStoredIsTold) {
  const std::string hour = R"("StartDate":"1998-04-06T13:00:00","EndDate":"1998-04-06T14:00:00")";
  const auto pattern = [&](const std::string& members) {
    return hour + R"(,"Pattern":{)" + members + "}";
  };
  const std::string ok = R"({"result":0})";
  const struct {
    const char* type;
    std::vector<std::pair<std::string, std::string>> talk;  // records, and what is answered
  } cases[] = {
      {"calendar",
       {{R"("StartDate":"1998-04-06T13:00:00","EndDate":"1998-04-06T13:00:00")",
         R"({"result":0,"stored":false})"},
        {hour, ok},
        {hour, ok},
        {hour, ok},
        {hour, R"({"result":1})"},
        {R"("StartDate":"1998-04-06")", R"({"error":"\"EndDate\" is missing"})"},
        {pattern(R"("Interval":2)"), R"({"error":"\"Type\" is missing"})"},
        {pattern(R"("Type":1,"Interval":40000)"),
         R"({"error":"\"Interval\" must be a whole number from -32768 to 32767"})"},
        {pattern(R"("Type":1,"Exceptions":[{"Changes":16}])"),
         R"({"error":"\"Date\" is missing"})"}}},
      {"todo",
       {{R"("DueDate":"29 May")",
         R"({"error":"\"DueDate\" must be a date as 1998-03-02, or 1998-03-02T12:00:00"})"},
        {R"("NoDueDate":false)", R"({"error":"\"DueDate\" is missing"})"}}},
  };
  for (const auto& each : cases) {
    std::string calls =
        std::string(R"({"op":"open","location":"C:\\Data\\Ada","type":")") + each.type + "\"}\n";
    Lines answers = {ok};
    for (const auto& [record, answer] : each.talk) {
      calls += R"({"op":"add","record":{)" + record + "}}\n";
      answers.push_back(answer);
    }
    const Finished driven = RunPairwise({"-p", demo, "drive"}, calls + "{\"op\":\"close\"}\n");
    answers.push_back(ok);
    EXPECT_EQ(LinesOf(driven.out), answers);
    EXPECT_EQ(driven.code, 1);
  }
}

TEST_F(LifeOfARunTest, CategoriesAreMadeAndAllIsDeletedUnderTheOrganisersEyes) {
  Process organiser({"-p", demo, "organiser"});
  ASSERT_EQ(organiser.ReadLine(), "ready");
  const Lines made = Drive(
      "{\"op\":\"config\",\"id\":3,\"value\":\"C:\\\\Data\"}\n"
      "{\"op\":\"newcategory\",\"type\":\"contact\",\"name\":\"Club\",\"template\":1}\n"
      "{\"op\":\"fieldnames\",\"type\":\"contact\",\"location\":\"C:\\\\Data\\\\Club.WMCard\"}\n"
      "{\"op\":\"newcategory\",\"type\":\"contact\",\"name\":\"None\"}\n"
      "{\"op\":\"newcategory\",\"type\":\"memo\",\"name\":\"Travel\"}\n"
      "{\"op\":\"categories\",\"type\":\"memo\"}\n"
      "{\"op\":\"importpath\",\"path\":\"C:\\\\Data\\\\In.WMCard\"}\n"
      "{\"op\":\"prepareimport\",\"type\":\"contact\",\"fields\":[\"A\",\"B\"]}\n"
      "{\"op\":\"deletecategory\",\"type\":\"contact\",\"location\":\"C:\\\\Data\\\\In.WMCard\"}"
      "\n");
  const std::string ok = "{\"result\":0}";
  EXPECT_EQ(made[1], "{\"result\":0,\"location\":\"C:\\\\Data\\\\Club.WMCard\"}");
  EXPECT_EQ(made[2], "{\"result\":0,\"names\":[\"Member\",\"Since\",\"Contact Log\"]}");
  EXPECT_EQ(made[3], "{\"result\":1,\"location\":\"C:\\\\Data\\\\None.WMCard\"}");
  EXPECT_EQ(made[4], "{\"result\":0,\"location\":\"C:\\\\Data\\\\Travel;Travel\"}");
  EXPECT_TRUE(Has(made[5], "\"Travel\""));
  EXPECT_EQ(Lines(made.begin() + 6, made.end()), (Lines{ok, ok, ok}));

  const Lines emptied = Drive(
      "{\"op\":\"categories\",\"type\":\"contact\"}\n{\"op\":\"categories\",\"type\":\"todo\"}\n"
      "{\"op\":\"categories\",\"type\":\"memo\"}\n"
      "{\"op\":\"syncing\",\"types\":[\"contact\",\"todo\",\"memo\"]}\n{\"op\":\"deleteall\"}\n");
  EXPECT_EQ(emptied.back(), ok);
  const std::string left = RunPairwise({"-p", demo, "info"}).out;
  for (const char* line :
       {"contact   2 categories, 0 records\n", "todo      1 category, 0 records\n",
        "memo      3 categories, 0 records\n"}) {
    EXPECT_TRUE(Has(left, line));
  }
  EXPECT_TRUE(Has(left, "calendar  1 category, 15 records\n"));
  organiser.Signal(2);
  const std::string heard = organiser.Finish().out;
  EXPECT_TRUE(Has(heard, "  Write Binder  C:\\Data\\Notebook.WMWrite\n"));
  EXPECT_TRUE(Has(heard, "  Cardfile      C:\\Data\\Friends.WMCard\n"))
      << "deleting all asks for cardfiles too";
}

// The manager's backup overwrites nothing, and the second one finds its files there.
TEST_F(LifeOfARunTest, WhatNoRunNeedsIsAnsweredToo) {
  std::filesystem::create_directories(folder.Path() / "demo/data/kept");
  const Lines answers = Drive(R"({"op":"available"}
{"op":"headername"}
{"op":"icon"}
{"op":"showoptions"}
{"op":"setuppages"}
{"op":"setuppages","extra":true}
{"op":"backup","target":"C:\\Data\\kept"}
{"op":"reserved"}
{"op":"open","type":"memo","location":"C:\\Data\\Notebook;Notebook"}
{"op":"sourcereserved"}
{"op":"close"}
)");
  const Lines expected = {"{\"result\":true}",
                          "{\"name\":\"file\"}",
                          "{\"result\":true}",
                          "{\"result\":true}",
                          R"({"result":0,"pages":1})",
                          R"({"result":0,"pages":1})",
                          R"({"result":0,"path":"C:\\Data\\kept"})",
                          R"({"flag":1,"queries":[0,0,0],"actions":[1,1],"triple":2})",
                          "{\"result\":0}",
                          R"({"status":2,"operation":2,"query":false})",
                          "{\"result\":0}"};
  EXPECT_EQ(answers, expected);
  EXPECT_EQ(folder.Get("demo/data/kept/Friends.WMCard"), folder.Get("demo/data/Friends.WMCard"));
}

}  // namespace
}  // namespace pw
