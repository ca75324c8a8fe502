#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/end_to_end/process.h"
#include "tests/end_to_end/sample.h"
#include "tests/support/calltask_builder.h"
#include "tests/support/recurring_file_builder.h"

namespace pw {
namespace {

TEST(Check, SaysWhatEachFileHoldsAndWhatIsWrongWithIt) {
  const Sample sample;
  const std::string data = sample.Folder() + "/c/Data";
  const Finished well = RunPairwise({"check", data});
  EXPECT_EQ(well.code, 0) << well.messages;
  EXPECT_EQ(well.out,
            "Friends.WMCard  cardfile: 3 cards of 4 fields\n1 file of the organiser's: all is "
            "well\n");

  // Two days that end within their only record, in a file of many such days.
  test::CallTaskBytes tasks{"WMWTASK50"};
  for (int day = 0; day < 30; ++day) {
    tasks.days.push_back({1998, day, {test::Task50(1, 2, "s", "n")}});
  }
  std::string bytes = tasks.Build();
  for (int day = 0; day < 25; ++day) bytes.replace(626 + day * 17 + 9, 4, test::Word(30, 4));
  sample.folder.Put("c/Data/AdaTASK.WMW", bytes);
  sample.folder.Put("c/Data/letter.txt", "not the organiser's");
  std::filesystem::create_directory(sample.folder.Path() / "c/Data/CLOCKS.DAT");
  const Finished ill = RunPairwise({"check", data});
  EXPECT_EQ(ill.code, 4);
  EXPECT_EQ(ill.messages, "");
  EXPECT_EQ(ill.out.substr(0, ill.out.find("\n  at 6979")),
            "AdaTASK.WMW     5 tasks of version 50\n"
            "  at 6848: a whole task was expected here; its day is left out; the next save would "
            "lose 1 record");
  EXPECT_TRUE(Has(ill.out, "\n  and 5 things more\nCLOCKS.DAT      can't be read\n  " + data +
                               "/CLOCKS.DAT: Is a directory\n"));
  EXPECT_TRUE(Has(ill.out,
                  "\n3 files of the organiser's, 1 other: 26 findings, 25 records would be "
                  "lost at the next save\n"));
  EXPECT_EQ(RunPairwise({"check", data + "/none"}).code, 1);
}

// A calendar that the module would take for an empty one.
TEST(Check, NoRunThatWritesStartsOnACalendarThatItCannotSee) {
  const Sample sample;
  const std::string data = sample.Folder() + "/c/Data/";
  const std::string series = test::SomeSeries(true).Build();
  const std::string calls = "{\"op\":\"types\"}\n";
  for (const char* file : {"c/Data/AdaData.wmw", "c/Data/AdaRecr.wmw"}) {
    std::filesystem::remove(data + "AdaData.wmw");
    sample.folder.Put(file, series);
    const Finished refused = sample.Run({"drive"}, calls);
    EXPECT_EQ(refused.code, 1);
    EXPECT_EQ(refused.out, "");
    EXPECT_EQ(
        refused.messages,
        "pairwise: " + data +
            "AdaEVEN.WMW: not there, so that a save would overwrite the calendar's other files; "
            "`pairwise restore` brings a backup back, `pairwise check` tells of the others, and "
            "only "
            "`pairwise drive --force` goes on all the same\n")
        << file;
  }
  EXPECT_EQ(sample.Run({"drive", "--force"}, calls).code, 0);
  EXPECT_EQ(sample.Run({"list", "contact"}).code, 0) << "who only looks may";
  std::filesystem::create_directory(data + "AdaEven.wmw");
  const Finished folder = sample.Run({"drive", "--force"}, calls);
  EXPECT_EQ(folder.code, 1);
  EXPECT_TRUE(Has(folder.messages, "can't be opened for reading and writing"));
  EXPECT_EQ(sample.folder.Get("c/Data/AdaRecr.wmw"), series);
}

TEST(Check, NoRunThatWritesStartsOnADefaultUsersCalendarElsewhereThatItCannotSee) {
  const Sample sample;
  sample.folder.Put("registry.reg", sample.folder.Get("registry.reg") +
                                        "\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Gullwing\\PairWise "
                                        "Desktop\\Version 1\\Calendar-Task]\r\n"
                                        "\"DefUserName\"=\"C:\\\\Other\\\\Ada\"\r\n");
  sample.folder.Put("c/Other/AdaRecr.wmw", test::SomeSeries(true).Build());
  const Finished refused = sample.Run({"drive"}, "{\"op\":\"types\"}\n");
  EXPECT_EQ(refused.code, 1);
  EXPECT_TRUE(Has(refused.messages, "c/Other/AdaEVEN.WMW: not there"));
}

}  // namespace
}  // namespace pw
