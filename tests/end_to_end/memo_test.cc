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
    test::PutBinder(folder, "c/Data/Notes", binder);
  }
};

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
  EXPECT_TRUE(Has(show.out, "Body      line\n          line\n"));
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
  EXPECT_TRUE(Has(made, "no \\{rich\\} text\\par"));

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

TEST(Memos, OfDamagedBindersAreTold) {
  const MemoSample sample;
  const std::string data = sample.Folder() + "/c/Data";
  EXPECT_EQ(RunPairwise({"check", data}).code, 0);
  sample.folder.Put("c/Data/Notes.WMContent", "short");
  const Finished ill = RunPairwise({"check", data});
  EXPECT_EQ(ill.code, 4);
  EXPECT_TRUE(
      Has(ill.out, "\nNotes.WMNoteHeader  memos: 3 notes\n  at 10: note 1 (id 900000000) "));
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
  EXPECT_TRUE(Has(list.messages, "/Notes.WMNoteHeader: its notes share their texts"));
  EXPECT_EQ(RunPairwise({"check", sample.Folder() + "/c/Data"}).code, 4);
}

}  // namespace
}  // namespace pw
