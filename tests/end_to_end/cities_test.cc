#include <stdlib.h>

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/end_to_end/process.h"
#include "tests/end_to_end/sample.h"
#include "tests/support/city_file_builder.h"

namespace pw {
namespace {

const std::string kHeading = "City\tZone\tOffset\tDaylight from\tDaylight until\tCountry\n";

TEST(Cities, AreMadeOfThisMachinesZonesWithoutAProfile) {
  ::unsetenv("PAIRWISE_PROFILE");
  const TempFolder folder;
  const std::string file = (folder.Path() / "cityinfo.dat").string();
  const Finished first = RunPairwise({"cities", "--from-system", file});
  ASSERT_EQ(first.code, 0) << first.messages;
  EXPECT_EQ(first.out.rfind("Wrote ", 0), 0U) << first.out;
  EXPECT_TRUE(Has(first.out, " zones to " + file + ", with timezone.dat beside it"));
  const std::size_t zoneFile = folder.Get("timezone.dat").size();
  EXPECT_EQ(zoneFile % 34, 0U);
  EXPECT_GT(zoneFile, 34U * 40);

  const Finished list = RunPairwise({"cities", file});
  EXPECT_EQ(list.code, 0) << list.messages;
  EXPECT_EQ(list.out.rfind(kHeading, 0), 0U) << list.out;
  EXPECT_TRUE(Has(list.out, "\nNew York, NY\t"));
  EXPECT_TRUE(Has(list.out, "\t-05:00\t2nd Sun Mar 02:00\t1st Sun Nov 02:00\tUSA\n"));
  const Finished table = RunPairwise({"cities", "--table", file});
  EXPECT_TRUE(Has(table.out, "  1st Sun Nov 02:00\n"))
      << "80 columns have room for all but the country";
}

TEST(Cities, ReplaceNoFileUnasked) {
  for (const char* name : {"cityinfo.dat", "timezone.dat"}) {
    const TempFolder folder;
    const std::string file = (folder.Path() / "cityinfo.dat").string();
    folder.Put(name, "old");
    const Finished refused = RunPairwise({"cities", "--from-system", file});
    EXPECT_EQ(refused.code, 1);
    EXPECT_TRUE(Has(refused.messages, std::string(name) + ": already there; --force"));
    EXPECT_EQ(folder.Get("cityinfo.dat") + folder.Get("timezone.dat"), "old");
    const Finished forced = RunPairwise({"cities", "--from-system", file, "--force"});
    EXPECT_EQ(forced.code, 0) << forced.messages;
    EXPECT_NE(folder.Get(name), "old");
  }
}

TEST(Cities, AreThoseOfTheFolderThatTheRegistryNames) {
  const Sample sample;
  const Finished without = sample.Run({"cities"});
  EXPECT_EQ(without.code, 1);
  EXPECT_EQ(without.messages, "pairwise: " + sample.Folder() +
                                  "/registry.reg: no data folder of the organiser's is noted "
                                  "there\n");
  sample.folder.Put("registry.reg",
                    sample.folder.Get("registry.reg") + "\"Data\"=\"C:\\\\Wing\\\\\"\r\n");
  const Finished missing = sample.Run({"cities"});
  EXPECT_EQ(missing.code, 1);
  EXPECT_TRUE(Has(missing.messages, "cityinfo.dat: not there"));

  const std::string whole = test::SevenCities().Build();
  sample.folder.Put("c/Wing/CityInfo.dat", whole);
  const Finished found = sample.Run({"cities"});
  EXPECT_EQ(found.code, 0) << found.messages;
  EXPECT_EQ(found.out.rfind(kHeading + "Aachen\t5\t+01:00\t", 0), 0U) << found.out;

  sample.folder.Put("c/Wing/CityInfo.dat", whole.substr(0, whole.size() - 1));
  const Finished cut = sample.Run({"cities"});
  EXPECT_EQ(cut.code, 4);
  EXPECT_EQ(cut.out, found.out) << "the last one is deleted anyway";
  EXPECT_TRUE(Has(cut.messages, "/c/Wing/CityInfo.dat: cut off"));
}

TEST(Cities, ExitAsTheyEndAndSayWhyInOneLine) {
  const TempFolder folder;
  folder.Put("short.dat", "abc");
  folder.Put("none/zone1970.tab", "");
  const std::string path = folder.Path().string();
  ::setenv("TZDIR", (path + "/none").c_str(), 1);
  const struct {
    std::vector<std::string> words;
    int code;
    std::string message;
  } cases[] = {
      {{"cities", path + "/short.dat"}, 1, path + "/short.dat: too short for a city file"},
      {{"cities", path + "/no.dat"}, 1, path + "/no.dat: No such file"},
      {{"cities", path}, 1, path + ": Is a directory"},
      {{"cities", "--from-system", path + "/x.dat"}, 1, path + "/none/iso3166.tab: No such file"},
      {{"cities", "--from-system", path + "/timezone.dat"}, 2, "such as cityinfo.dat"},
      {{"cities", "--from-system", ""}, 2, "--from-system"},
      {{"cities", "--from-system", path + "/x.dat", path + "/short.dat"}, 2, "excludes"},
      {{"cities", "--force"}, 2, "--force requires --from-system"},
  };
  for (const auto& each : cases) {
    const Finished run = RunPairwise(each.words);
    EXPECT_EQ(run.code, each.code) << each.message;
    EXPECT_TRUE(Has(run.messages, each.message));
    EXPECT_EQ(run.out, "");
  }
  ::unsetenv("TZDIR");
  EXPECT_FALSE(std::filesystem::exists(folder.Path() / "x.dat"));
}

}  // namespace
}  // namespace pw
