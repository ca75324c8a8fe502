#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/portable/rtf_writer.h"
#include "tests/end_to_end/process.h"
#include "tests/end_to_end/sample.h"
#include "tests/platform/temp_folder.h"
#include "tests/support/binder_builder.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

// With a binder of two sections, "Work" and "Café".
class MemoSample : public Sample {
 public:
  MemoSample() { Put(test::TwoSections()); }

  void Put(const test::BinderBytes& binder) const {
    folder.Put("c/Data/Notes.WMWrite", binder.Sections());
    folder.Put("c/Data/Notes.WMNoteHeader", binder.Headers());
    folder.Put("c/Data/Notes.WMContent", binder.Contents());
  }
  Finished Run(std::vector<std::string> words, const std::string& input = "") const {
    words.insert(words.begin(), {"-p", Folder()});
    return RunPairwise(words, input);
  }
};

const std::string kOpenWork =
    "{\"op\":\"now\",\"seconds\":950000000}\n"
    "{\"op\":\"open\",\"type\":\"memo\",\"location\":\"C:\\\\Data\\\\Notes;Work\"}\n";

TEST(Memos, AreListedShownAndExported) {
  const MemoSample sample;
  EXPECT_EQ(sample.Run({"categories", "memo"}).out.find("Work - Notes") == std::string::npos,
            false);
  const Finished list = sample.Run({"list", "memo"});
  EXPECT_EQ(list.code, 0) << list.messages;
  EXPECT_EQ(list.out,
            "Category\tID\tSubject\tBody\n"
            "Work - Notes\t900000000\tPlan\tline line\n"
            "Work - Notes\t900000005\tplain subject\t\n"
            "Café - Notes\t-3\tTrip\tpack\n");
  const Finished show = sample.Run({"show", "memo", "900000000"});
  EXPECT_NE(show.out.find("Body      line\n          line\n"), std::string::npos) << show.out;
  EXPECT_EQ(sample.Run({"export", "memo", "Café - Notes"}).out,
            "[\n  {\"id\":\"-3\",\"category\":\"Café - Notes\",\"record\":{\"Subject\":\"Trip\","
            "\"Body\":\"pack\"}}\n]\n");
  EXPECT_EQ(sample.Run({"list", "memo"}).out, list.out);
}

TEST(Memos, BecomeFilesOfTheirOwn) {
  const MemoSample sample;
  test::BinderBytes binder = test::TwoSections();
  binder.notes.insert(binder.notes.begin() + 1,
                      {{7, 0, test::RichOf("a/b: c?\\par ."), "no {rich} text"},
                       {7, 0, test::RichOf("of one id"), test::RichOf("its own")},
                       {8, 0, "PLAN", test::RichOf("{\\b again}")},
                       {9, 0, "", ""}});
  sample.Put(binder);
  const std::string texts = sample.Folder() + "/texts";
  EXPECT_EQ(sample.Run({"export", "memo", "--format", "txt", "-o", texts}).code, 0);
  EXPECT_EQ(sample.folder.Get("texts/Work - Notes/Plan.txt"), "Plan\n\nline\nline\n");
  EXPECT_EQ(sample.folder.Get("texts/Work - Notes/PLAN (2).txt"), "PLAN\n\nagain\n");
  EXPECT_EQ(sample.folder.Get("texts/Work - Notes/a_b_ c___.txt"), "a/b: c? .\n\nno {rich} text\n");
  EXPECT_EQ(sample.folder.Get("texts/Work - Notes/untitled.txt"), "\n\n");
  EXPECT_EQ(sample.folder.Get("texts/Café - Notes/Trip.txt"), "Trip\n\npack\n");

  const std::string documents = sample.Folder() + "/documents";
  EXPECT_EQ(sample.Run({"export", "memo", "--format", "rtf", "-o", documents}).code, 0);
  EXPECT_EQ(sample.folder.Get("documents/Café - Notes/Trip.rtf"), binder.notes.back().body)
      << "as the binder has it";
  const std::string made = sample.folder.Get("documents/Work - Notes/a_b_ c___.rtf");
  EXPECT_EQ(made.substr(0, 6), "{\\rtf1");
  EXPECT_NE(made.find("no \\{rich\\} text\\par"), std::string::npos);

  EXPECT_EQ(sample.folder.Get("documents/Work - Notes/of one id.rtf"), test::RichOf("its own"));

  const Finished noFolder =
      sample.Run({"export", "memo", "--format", "rtf", "-o", std::string(300, 'x')});
  EXPECT_EQ(noFolder.code, 1);
  EXPECT_EQ(noFolder.messages, "pairwise: " + std::string(300, 'x') + ": File name too long\n");
  const Finished again = sample.Run({"export", "memo", "--format", "rtf", "-o", texts});
  EXPECT_EQ(again.code, 1);
  EXPECT_EQ(again.messages,
            "pairwise: " + texts + ": not empty; name a new folder, so that no file is lost\n");
  EXPECT_EQ(sample.Run({"export", "memo", "--format", "txt"}).code, 2);
  EXPECT_EQ(sample.Run({"export", "contact", "--format", "rtf", "-o", texts}).code, 2);
}

// Of what we write ourselves: every character and empty lines. Blanks and tabs it shows in
// its own way.
TEST(Memos, ReadTheSameInAnotherProgram) {
  std::string all;
  for (char c = '!'; c <= '~'; ++c) all.append(c % 32 == 0 ? "\r\n" : "").append(1, c);
  for (const std::string& body :
       {all, std::string("a\r\n\r\n\r\nb c"), std::string("{\\rtf1 \\par}\r\n")}) {
    const std::string document = *rtf::Document(body, {"Arial", 20, 0}, SIZE_MAX);
    const TempFolder folder;
    folder.Put("ours.rtf", document);
    const std::string text =
        OutputOf("unrtf --text --quiet --nopict '" + (folder.Path() / "ours.rtf").string() + "'");
    const std::string rule = "-----------------\n";
    const std::size_t begin = text.find(rule);
    ASSERT_NE(begin, std::string::npos) << text;
    std::string found = text.substr(begin + rule.size());
    std::string expected = body + "\r\n";
    std::erase(expected, '\r');
    for (std::string* each : {&found, &expected}) {
      std::erase(*each, ' ');
    }
    EXPECT_EQ(found, expected);
  }
}

TEST(Memos, AreChangedByTheEnginesCalls) {
  const MemoSample sample;
  const Finished driven =
      sample.Run({"drive"}, kOpenWork +
                                "{\"op\":\"count\"}\n"
                                "{\"op\":\"find\",\"id\":\"900000005\"}\n"
                                "{\"op\":\"update\",\"record\":{\"Subject\":\"now rich\"}}\n"
                                "{\"op\":\"stamp\"}\n"
                                "{\"op\":\"find\",\"id\":\"900000000\"}\n"
                                "{\"op\":\"delete\"}\n"
                                "{\"op\":\"find\",\"id\":\"-3\"}\n"
                                "{\"op\":\"close\"}\n");
  const std::string ok = "{\"result\":0}\n";
  EXPECT_EQ(driven.out, "{}\n" + ok + "{\"count\":2}\n" + ok + ok +
                            "{\"stamp\":\"2000-02-08T08:53:20\"}\n" + ok + ok + "{\"result\":1}\n" +
                            ok);
  EXPECT_EQ(sample.Run({"list", "memo"}).out,
            "Category\tID\tSubject\tBody\nWork - Notes\t900000005\tnow rich\t\n"
            "Café - Notes\t-3\tTrip\tpack\n");
  EXPECT_EQ(sample.Run({"check", sample.Folder() + "/c/Data"}).code, 0);
}

TEST(Memos, OfDamagedBindersAreTold) {
  const MemoSample sample;
  const std::string data = sample.Folder() + "/c/Data";
  EXPECT_EQ(RunPairwise({"check", data}).code, 0);
  test::BinderBytes binder = test::TwoSections();
  binder.sections.push_back({"again", 7});
  binder.notes[1].sectionId = 99;
  sample.Put(binder);
  sample.folder.Put("c/Data/Notes.WMContent", "short");
  const Finished ill = RunPairwise({"check", data});
  EXPECT_EQ(ill.code, 4);
  EXPECT_NE(ill.out.find("\nNotes.WMNoteHeader  memos: 3 notes\n  at 42: note 2 (id 900000005) is "
                         "of section 99, which the binder hasn't got; a save leaves out this note "
                         "and all behind it, and the binder can't be opened any more; the next "
                         "save would lose 2 records\n  at 10: note 1 (id 900000000) has its text"),
            std::string::npos)
      << ill.out;
  EXPECT_NE(ill.out.find("\n  at 66: section \"again\" has the id 7, which is another's already\n"),
            std::string::npos)
      << ill.out;

  const Finished list = sample.Run({"list", "memo"});
  EXPECT_EQ(list.code, 4);
  EXPECT_EQ(list.messages, "pairwise: " + data +
                               "/Notes.WMNoteHeader: damaged, so that not all of the binder is "
                               "read; see `pairwise check`\n");

  fs::remove(sample.folder.Path() / "c/Data/Notes.WMContent");
  EXPECT_EQ(RunPairwise({"check", data}).code, 4);
  const Finished none = sample.Run({"list", "memo"});
  EXPECT_EQ(none.code, 4);
  EXPECT_EQ(none.out, "Category\tID\n") << "it has no categories";
  EXPECT_EQ(none.messages, "pairwise: " + data +
                               "/Notes.WMWrite: this binder can't be opened, and is left out; see "
                               "`pairwise check`\n");
  sample.folder.Put("c/Data/Notes.WMNoteHeader", "");
  EXPECT_NE(RunPairwise({"check", data}).out.find("more notes were expected"), std::string::npos);
}

TEST(Memos, ThatTheNextSaveWouldLoseAreFound) {
  const MemoSample sample;
  const std::string data = sample.Folder() + "/c/Data";
  test::BinderBytes binder = test::TwoSections();
  binder.sections.push_back({"Work", 9});
  binder.sections.push_back({std::string(25, 'n'), 10});
  sample.Put(binder);
  std::string headers = binder.Headers();
  headers.replace(6, 4, test::Word(1, 4));
  sample.folder.Put("c/Data/Notes.WMNoteHeader", headers);
  const std::string found = RunPairwise({"check", data}).out;
  for (const char* line : {
           "at 42: the end was expected here, behind as many notes as are counted; the next save "
           "would lose 2 records\n",
           "at 66: section \"Work\" has the name of another one, and can't be reached\n",
           "at 98: section \"nnnnnnnnnnnnnnnnnnnnnnnnn\" has a name of 25 bytes, of which the "
           "next save keeps 24\n",
       }) {
    EXPECT_NE(found.find(line), std::string::npos) << line << found;
  }
}

// Read one by one they would take thousands of times as much room as the files.
TEST(Memos, ThatShareTheirTextsAreNotRead) {
  const MemoSample sample;
  test::BinderBytes binder = test::TwoSections();
  std::string headers = "WMW300" + test::Word(1000, 4);
  for (int i = 0; i < 1000; ++i) headers += binder.notes[0].Header(0);
  sample.folder.Put("c/Data/Notes.WMNoteHeader", headers);
  const Finished list = sample.Run({"list", "memo", "Work - Notes"});
  EXPECT_EQ(list.code, 1);
  EXPECT_NE(list.messages.find("/Notes.WMNoteHeader: its notes share their texts"),
            std::string::npos)
      << list.messages;
  EXPECT_EQ(RunPairwise({"check", sample.Folder() + "/c/Data"}).code, 4);
}

}  // namespace
}  // namespace pw
