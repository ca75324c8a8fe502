#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "host/formats/contact_json.h"
#include "tests/end_to_end/process.h"
#include "tests/end_to_end/sample.h"
#include "tests/platform/temp_folder.h"
#include "tests/support/card_file_builder.h"

namespace pw {
namespace {

// A file, how it is brought in, and what is said and kept then.
struct Case {
  const char* name;
  std::string text;
  int code;
  const char* out;
  std::vector<std::string> messages;  // each occurs
  std::vector<std::string> cards;     // what is kept, each occurs
};

void Check(const Sample& sample, const Case& each, bool update) {
  SCOPED_TRACE(each.name);
  sample.folder.Put(each.name, each.text);
  std::vector<std::string> words = {"import", "contact", sample.Folder() + "/" + each.name};
  if (update) words.emplace_back("--update");
  const Finished run = sample.Run(words);
  EXPECT_EQ(run.code, each.code) << run.messages;
  EXPECT_EQ(run.out, each.out);
  for (const std::string& message : each.messages) EXPECT_TRUE(Has(run.messages, message));
  const std::string cards = sample.Run({"export", "contact", "--format", "csv"}).out;
  for (const std::string& card : each.cards) {
    EXPECT_NE(cards.find(card), std::string::npos) << card;
  }
}

TEST(ImportUpdate, ChangesEachCardThatWasThereOnce) {
  const std::string longText(40'000, 'x');
  const Case cases[] = {
      // The ids of new cards go on from 7.
      {"given.csv",
       "id,Company\r\n9999,First\r\n8,Second\r\n",
       0,
       "2 records added\n",
       {},
       {"First", "Second", "Acme"}},
      {"twice.csv",
       "id,Company\r\n7,Once\r\n7,Twice\r\n",
       4,
       "0 records added, 1 updated, 1 refused\n",
       {"record 2 (Twice): refused, as the record with its id was changed by one before"},
       {"Once"}},
      {"alike.csv",
       "id,Company\r\n7x,Prefix\r\n4294967303,Wrapped\r\n007,Zeros\r\n",
       0,
       "3 records added\n",
       {},
       {"Acme", "Prefix", "Wrapped", "Zeros"}},
      {"long.json",
       "[{\"id\":\"7\",\"fields\":{\"First Name\":\"" + longText +
           "\"}},{\"id\":\"7\",\"fields\":{\"Last Name\":\"" + longText + "\"}}]",
       4,
       "0 records added, 1 updated, 1 refused\n",
       {"was changed by one before"},
       {}},
  };
  for (const Case& each : cases) Check(Sample(), each, true);

  const Sample sample;
  Check(sample,
        {"a.json",
         "[{\"id\":\"7\",\"fields\":{\"First Name\":\"" + longText + "\"}}]",
         0,
         "0 records added, 1 updated\n",
         {},
         {longText}},
        true);
  Check(sample,
        {"b.json",
         "[{\"id\":\"7\",\"fields\":{\"Last Name\":\"" + longText + "\"}}]",
         4,
         "0 records added, 1 refused\n",
         {"65,535 bytes"},
         {longText, "Abel"}},
        true);
}

// A UID tells of which cardfile its card is, and which of several with one id.
TEST(ImportUpdate, LeavesCardsOfAnotherFileAlone) {
  const Sample sample;
  const std::string own = sample.Run({"export", "contact", "--format", "vcf"}).out;
  const std::size_t uid = own.find("UID:pairwise-") + 13;
  std::string foreign = own;
  foreign[uid] = own[uid] == '0' ? '1' : '0';
  const std::string first = own.substr(0, own.find("END:VCARD") + 11);
  std::string second = first;
  second.insert(second.find("\r\n", uid), "#2");
  const std::string before = sample.folder.Get("c/Data/Friends.WMCard");
  Check(sample,
        {"second.vcf",
         second,
         4,
         "0 records added, 1 refused\n",
         {"several records have its id"},
         {}},
        true);
  const std::string other = foreign.substr(0, first.size());
  Check(sample,
        {"other.vcf",
         other,
         4,
         "0 records added, 1 refused\n",
         {"its UID is of another file; without --update it is added"},
         {}},
        true);
  EXPECT_EQ(sample.folder.Get("c/Data/Friends.WMCard"), before);
  Check(sample, {"own.vcf", own, 0, "0 records added, 3 updated\n", {}, {}}, true);
  Check(sample, {"new.vcf", other, 0, "1 record added\n", {}, {}}, false);
}

// The last named field and the contact log are the only ones that aren't lines of the file.
TEST(ImportUpdate, KeepsTheLineBreaksThatACardHas) {
  for (const char* format : {"json", "csv", "vcf"}) {
    SCOPED_TRACE(format);
    const Sample sample;
    const std::string own = sample.Run({"export", "contact", "--format", format}).out;
    const auto fields = [&] {
      nlohmann::json all;
      const auto cards = nlohmann::json::parse(sample.Run({"export", "contact"}).out);
      for (const auto& card : cards) all.push_back(card["fields"]);
      return all;
    };
    const nlohmann::json before = fields();
    ASSERT_EQ(before[0]["Company"], "Acme\r\nSecond line");
    const std::string file = std::string("own.") + format;
    Check(sample, {file.c_str(), own, 0, "0 records added, 3 updated\n", {}, {}}, true);
    EXPECT_EQ(fields(), before);
    ASSERT_EQ(sample.Run({"remove", "contact", "Friends", "--yes"}).code, 0);
    ASSERT_EQ(sample
                  .Run({"new", "contact", "Friends", "--field", "First Name", "--field",
                        "Last Name", "--field", "Company"})
                  .code,
              0);
    Check(sample, {file.c_str(), own, 0, "3 records added\n", {}, {}}, false);
    EXPECT_EQ(fields(), before);
  }
  const Sample sample;
  Check(sample,
        {"lines.csv",
         "First Name,Company,Contact Log\r\n\"a\r\nb\",\"c\r\nd\",\"e\r\nf\"\r\n",
         0,
         "1 record added, 1 of them changed\n",
         {"First Name is in one line now"},
         {"a b", "\"c\r\nd\"", "\"e\r\nf\""}},
        false);
}

// An alarm of a day comes out as a minute more than the plug-in lets in, which rounds it up again.
TEST(ImportUpdate, TellsOfNoAlarmThatStaysAsItWas) {
  const TempFolder folder;
  const std::string demo = (folder.Path() / "demo").string();
  ASSERT_EQ(RunPairwise({"demo", demo}).code, 0);
  const auto exported = [&](const char* format) {
    return RunPairwise({"-p", demo, "export", "calendar", "--format", format}).out;
  };
  const auto import = [&](const std::string& file, const std::string& text) {
    folder.Put(file, text);
    return RunPairwise(
        {"-p", demo, "import", "calendar", (folder.Path() / file).string(), "--update"});
  };
  nlohmann::json birthday;
  for (const auto& each : nlohmann::json::parse(exported("json"))) {
    if (each["record"].value("AlarmAdvance", 0) == 1440) birthday = each;
  }
  ASSERT_FALSE(birthday.is_null());
  const std::string before = exported("json");
  for (const char* format : {"json", "csv", "ics"}) {
    const Finished run = import(std::string("own.") + format, exported(format));
    EXPECT_EQ(run.messages.find("W2015"), std::string::npos) << run.messages;
    EXPECT_EQ(exported("json"), before) << format;
  }
  birthday["record"]["AlarmAdvance"] = 2160;
  const Finished two = import("two.json", nlohmann::json::array({birthday}).dump());
  EXPECT_TRUE(Has(two.messages, "W2015")) << "of two days one is left";
}

// Two cards more find room.
TEST(ImportLimits, ACardfileHasItsMostCardsAndNoMore) {
  const Sample sample;
  test::CardFileBytes full = test::ThreeCards();
  while (full.cards.size() < kMostContacts - 2) {
    const std::string name = "c" + std::to_string(full.cards.size());
    full.cards.push_back({static_cast<std::int32_t>(full.cards.size() + 100), name,
                          test::Stamped("\r\n\r\n" + name + "\r\n", "917000000"), ""});
  }
  sample.folder.Put("c/Data/Friends.WMCard", full.Build());
  Check(sample,
        {"more.csv",
         "Company\r\nd1\r\nd2\r\nd3\r\nd4\r\n",
         4,
         "2 records added, 2 refused\n",
         {"record 3 (d3): refused, as a cardfile holds 65,535 cards at most"},
         {"Acme", ",c3,", ",d2,"}},
        false);
}

TEST(ImportLimits, OfAFileOfMoreCardsOnlySoManyAreRead) {
  std::string cards = "[";
  for (std::size_t i = 0; i <= kMostContacts; ++i) cards += "{\"fields\":[[\"N\",\"c\"]]},";
  cards.back() = ']';
  const JsonContacts read = ReadContactsJson(cards);
  EXPECT_EQ(read.contacts.size(), kMostContacts);
  EXPECT_EQ(read.errors.Texts(),
            std::vector<std::string>{std::string("contact 65536: ") + kTooManyContacts});
}

// The disk is full: of a thousand cards the file keeps those at its front.
TEST(ImportLimits, WhatTheSaveLosesIsTold) {
  const Sample sample;
  std::string cards = "Company\r\n";
  for (int i = 0; i < 1000; ++i) cards += "c" + std::to_string(i) + "\r\n";
  sample.folder.Put("cards.csv", cards);
  const std::string said =
      OutputOf("(trap '' XFSZ; ulimit -f 64; " PAIRWISE " -p " + sample.Folder() +
               " import contact " + sample.Folder() + "/cards.csv; test $? != 0)");
  EXPECT_TRUE(Has(said, "isn't in the file after the save"));
  EXPECT_TRUE(Has(said, " of them missing in the file"));
  EXPECT_TRUE(Has(said, "could not be written whole"));
}

TEST(ImportLimits, NothingIsWrittenToADamagedFile) {
  const TempFolder folder;
  const std::string demo = (folder.Path() / "demo").string();
  ASSERT_EQ(RunPairwise({"demo", demo}).code, 0);
  folder.Put("cards.csv", "Company\r\nNew\r\n");
  folder.Put("memos.csv", "Category,Subject\r\nNotebook,New\r\n");
  const struct {
    const char* file;
    std::size_t at;
    std::string bytes;
    std::string type;
  } cases[] = {
      {"Friends.WMCard", 0, "XXX", "contact"},                    // its magic
      {"Friends.WMCard", 60, "\xFF\xFF\xFF", "contact"},          // where its names are
      {"Friends.WMCard", 10, "\xFF", "contact"},                  // its count of cards
      {"Friends.WMCard", 1361, std::string(4, '\0'), "contact"},  // where a card's body is
      {"Friends.WMCard", 1371, std::string(2, '\0'), "contact"},  // how long that is
      {"Notebook.WMNoteHeader", 0, "XXX", "memo"},                // its magic
      {"Notebook.WMNoteHeader", 6, "\x02", "memo"},               // its count of notes
      {"Notebook.WMNoteHeader", 12, "\x09", "memo"},              // the section of a note
      {"Notebook.WMWrite", 0, "\x01", "memo"},                    // its count of sections
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(testing::Message() << each.file << " " << each.at);
    const std::string path = std::string("demo/data/") + each.file;
    const std::string whole = folder.Get(path);
    std::string damaged = whole;
    damaged.replace(each.at, each.bytes.size(), each.bytes);
    ASSERT_NE(damaged, whole);
    folder.Put(path, damaged);
    const std::string file = each.type == "memo" ? "/memos.csv" : "/cards.csv";
    const Finished run =
        RunPairwise({"-p", demo, "import", each.type, folder.Path().string() + file});
    EXPECT_EQ(run.code, 4) << run.out;
    EXPECT_TRUE(Has(run.messages, "nothing is written to a damaged file"));
    EXPECT_EQ(folder.Get(path), damaged);
    folder.Put(path, whole);
  }
}

// Of each type the first record of the sample, some of which a file names.
TEST(ImportUpdate, KeepsWhatTheFileDoesNotName) {
  const TempFolder folder;
  const std::string demo = (folder.Path() / "demo").string();
  ASSERT_EQ(RunPairwise({"demo", demo}).code, 0);
  const auto run = [&](std::vector<std::string> words) {
    words.insert(words.begin(), {"-p", demo});
    return RunPairwise(words);
  };
  const auto find = [&](const std::string& type, const std::string& id) {
    for (const auto& each : nlohmann::json::parse(run({"export", type}).out)) {
      if (each["id"] == id) return each["record"];
    }
    return nlohmann::json();
  };
  const struct {
    const char* type;
    const char* id;
    const char* file;
    std::string text;
    nlohmann::json changed;  // of the record
  } cases[] = {
      {"todo",
       "266855+889235060",
       "a.csv",
       "id,Priority\r\n266855+889235060,HIGH\r\n",
       {{"Priority", 2}}},
      {"todo",
       "528999+889630120",
       "b.json",
       R"([{"id":"528999+889630120","record":{"Completed":false}}])",
       {{"Completed", false}}},
      {"todo",
       "528999+889630120",
       "c.csv",
       "id,Due\r\n528999+889630120,1998-03-04\r\n",
       {{"NoDueDate", false}, {"DueDate", "1998-03-04T00:00:00"}}},
      {"memo",
       "888840000",
       "d.csv",
       "id,Category,Subject\r\n888840000,Notebook,Other\r\n",
       {{"Subject", "Other"}}},
      {"memo",
       "888840000",
       "e.json",
       R"([{"id":"888840000","category":"Notebook","record":{"Body":"All new"}}])",
       {{"Body", "All new"}}},
      {"calendar",
       "888840000+4711",
       "f.csv",
       "id,Location\r\n888840000+4711,Tower\r\n",
       {{"Location", "Tower"}}},
      {"calendar",
       "Recurring:889333825",
       "g.json",
       R"([{"id":"Recurring:889333825","record":{"Subject":"Singing"}}])",
       {{"Subject", "Singing"}}},
      {"calendar",
       "888840000+4711",
       "h.csv",
       "id,Alarm\r\n888840000+4711,2 min before\r\n",
       {{"AlarmAdvance", 2}}},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.file);
    nlohmann::json expected = find(each.type, each.id);
    ASSERT_FALSE(expected.is_null());
    ASSERT_NE(expected, each.changed);
    expected.update(each.changed);
    folder.Put(each.file, each.text);
    const Finished import =
        run({"import", each.type, (folder.Path() / each.file).string(), "--update"});
    EXPECT_EQ(import.out, "0 records added, 1 updated\n") << import.messages;
    EXPECT_EQ(find(each.type, each.id), expected);
  }

  // What tells too little for a new record, or times without the rule that they have.
  folder.Put("lacks.csv",
             "id,Subject\r\n9+9,New\r\n"
             "Recurring:889333825,Choir\r\n");
  const Finished lacks =
      run({"import", "calendar", (folder.Path() / "lacks.csv").string(), "--update"});
  EXPECT_EQ(lacks.out, "0 records added, 1 updated, 1 refused\n") << lacks.messages;
  EXPECT_TRUE(Has(lacks.messages, "\"StartDate\" is missing"));
  const nlohmann::json series = find("calendar", "Recurring:889333825");
  folder.Put("times.csv",
             "id,Start,End\r\nRecurring:889333825,1998-03-05 10:00,1998-03-05 11:00\r\n");
  const Finished times =
      run({"import", "calendar", (folder.Path() / "times.csv").string(), "--update"});
  EXPECT_EQ(times.out, "0 records added, 1 refused\n") << times.messages;
  EXPECT_EQ(find("calendar", "Recurring:889333825"), series);
  // An event that has no length any more stays the one that it was.
  const nlohmann::json event = find("calendar", "888840000+4711");
  folder.Put("point.csv", "id,Start,End\r\n888840000+4711,1998-03-10 09:30,1998-03-10 09:30\r\n");
  const Finished point =
      run({"import", "calendar", (folder.Path() / "point.csv").string(), "--update"});
  EXPECT_TRUE(Has(point.messages, "an event of the organiser's takes a minute at least"));
  EXPECT_EQ(find("calendar", "888840000+4711"), event);
  // The module deletes what goes elsewhere before it sees that three events are there already.
  const std::string days = "Villaseca, by boat and train\t1998-05-18\t1998-05-24";
  EXPECT_TRUE(Has(run({"list", "calendar"}).out, days));
  folder.Put("full.csv",
             "id,Start,End\r\nMultiDay:889630120+201319,1998-03-12 14:30,1998-03-12 14:40\r\n");
  const Finished full =
      run({"import", "calendar", (folder.Path() / "full.csv").string(), "--update"});
  EXPECT_EQ(full.out, "0 records added, 1 refused\n") << full.messages;
  EXPECT_TRUE(Has(run({"list", "calendar"}).out, days));
}

// By their places where a file has those, whatever their numbers are.
TEST(ImportUpdate, FindsClocksByTheirPlaces) {
  const TempFolder folder;
  const std::string demo = (folder.Path() / "demo").string();
  ASSERT_EQ(RunPairwise({"demo", demo}).code, 0);
  const struct {
    const char* text;
    const char* out;
    const char* message;
    std::size_t home;  // of the clocks, afterwards
  } cases[] = {
      {"id,City,Country,Home\r\n0,Tokyo,Japan,yes\r\n", "0 records added, 1 updated\n", "", 6},
      {"City,Home\r\nParis,yes\r\n", "0 records added, 1 updated\n", "", 4},
      {"id,Home\r\n2,Yes\r\n", "0 records added, 1 updated\n", "", 2},
      {"City,Home\r\nOslo,yes\r\n", "0 records added, 1 refused\n",
       "record 1 (Oslo): refused, as none of the eight clocks is of its place", 2},
      {"Home\r\nyes\r\n", "0 records added, 1 refused\n", "it names no city", 2},
      {"id,Home\r\n8,yes\r\n", "0 records added, 1 refused\n", "none of the eight clocks'", 2},
      {"id,Home\r\n1,perhaps\r\n", "0 records added, 1 updated, 1 of them changed\n",
       "Home \"perhaps\" isn't \"yes\" or \"no\", and is left out", 2},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.text);
    folder.Put("clocks.csv", each.text);
    const Finished run =
        RunPairwise({"-p", demo, "import", "timezone", (folder.Path() / "clocks.csv").string()});
    EXPECT_EQ(run.out, each.out) << run.messages;
    EXPECT_TRUE(Has(run.messages, each.message));
    const auto clocks = nlohmann::json::parse(RunPairwise({"-p", demo, "export", "timezone"}).out);
    for (std::size_t i = 0; i < clocks.size(); ++i) {
      EXPECT_EQ(clocks[i]["record"]["Home"], i == each.home) << i;
    }
  }
}

}  // namespace
}  // namespace pw
