#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/end_to_end/process.h"
#include "tests/platform/temp_folder.h"

namespace pw {
namespace {

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

  // What a source of this type answers to a walk, an addition of the record, and its removal.
  Lines Live(const std::string& type, const std::string& location,
             const std::string& record) const {
    Lines answers =
        Drive("{\"op\":\"open\",\"type\":\"" + type + "\",\"location\":\"" + location +
              "\"}\n{\"op\":\"count\"}\n{\"op\":\"first\"}\n{\"op\":\"next\"}\n"
              "{\"op\":\"add\",\"record\":" +
              record + "}\n{\"op\":\"count\"}\n{\"op\":\"delete\"}\n{\"op\":\"close\"}\n");
    return answers;
  }

  const TempFolder folder;
  const std::string demo = (folder.Path() / "demo").string();
};

TEST_F(LifeOfARunTest, EveryTypeIsWalkedAndChanged) {
  const std::string ok = "{\"result\":0}";
  const struct {
    const char* type;
    const char* location;
    const char* record;
    int count;
  } cases[] = {
      {"contact", "C:\\\\Data\\\\Friends.WMCard", "{\"fields\":[[\"Last Name\",\"New\"]]}", 40},
      {"todo", "C:\\\\Data\\\\Ada", "{\"Subject\":\"New\"}", 12},
      {"calendar", "C:\\\\Data\\\\Ada",
       "{\"StartDate\":\"1999-01-04T10:00:00\",\"EndDate\":\"1999-01-04T11:00:00\"}", 15},
      {"memo", "C:\\\\Data\\\\Notebook;Workshop", "{\"Subject\":\"New\"}", 3},
  };
  for (const auto& each : cases) {
    const auto count = [&](int more) {
      return "{\"count\":" + std::to_string(each.count + more) + "}";
    };
    EXPECT_EQ(Live(each.type, each.location, each.record),
              (Lines{ok, count(0), ok, ok, ok, count(1), ok, ok}))
        << each.type;
  }
  const Lines clocks = Drive(
      "{\"op\":\"open\",\"type\":\"timezone\"}\n{\"op\":\"count\"}\n{\"op\":\"find\",\"id\":\"0\"}"
      "\n"
      "{\"op\":\"delete\"}\n{\"op\":\"close\"}\n");
  EXPECT_EQ(clocks, (Lines{ok, "{\"count\":8}", ok, "{\"result\":1}", ok}));
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
