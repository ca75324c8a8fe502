#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/end_to_end/process.h"
#include "tests/end_to_end/sample.h"
#include "tests/support/clock_file_builder.h"
#include "tests/support/zone_files.h"
#include "timeplace/city_format.h"

namespace pw {
namespace {

using test::Clock;

// The sample with eight clocks.
class ClockSample : public Sample {
 public:
  ClockSample() {
    folder.Put("registry.reg", folder.Get("registry.reg") +
                                   "\"Data\"=\"C:\\\\Data\"\r\n\"LocalCity\"=\"Lima\"\r\n");
    folder.Put("c/Data/cityinfo.dat", city::EncodeCityFile(test::SomeCities()));
    std::string clocks = Clock("New York, NY", "USA", false, false) +
                         Clock("Lima", "Peru", true, true) + Clock("Calcutta", "India", true, true);
    for (int i = 0; i < 5; ++i) clocks += Clock("Adelaide", "Australia", false, false);
    folder.Put("c/Data/Clocks.dat", clocks);
  }

  // The flags of all clocks as the file has them, 'h' and 'a' where they are 0.
  std::string FlagsInFile() const {
    const std::string bytes = folder.Get("c/Data/Clocks.dat");
    std::string flags;
    for (std::size_t at = 0; at + test::kClockSize <= bytes.size(); at += test::kClockSize) {
      flags += bytes.compare(at + 132, 4, std::string(4, '\0')) == 0 ? 'h' : '-';
      flags += bytes.compare(at + 128, 4, std::string(4, '\0')) == 0 ? 'a' : '-';
      flags += ' ';
    }
    return flags;
  }
};

// The module opens the clocks for writing too, but a command that reads changes nothing there.
TEST(Clocks, AreReadWhereTheRegistryHasThem) {
  const ClockSample sample;
  std::string registry = sample.folder.Get("registry.reg");
  registry.replace(registry.find("C:\\\\Data\"\r\n\"LocalCity"), 8, "C:\\\\Org1");
  sample.folder.Put("registry.reg", registry);
  for (const char* file : {"cityinfo.dat", "Clocks.dat"}) {
    sample.folder.Put(std::string("c/Org1/") + file,
                      sample.folder.Get(std::string("c/Data/") + file));
    sample.folder.Put(std::string("c/Data/") + file, "");
  }
  EXPECT_TRUE(Has(sample.Run({"info"}).out, "\ntimezone  8 records\n"));
  EXPECT_EQ(sample.folder.Get("c/Data/Clocks.dat"), "");
}

TEST(Clocks, AreListedShownAndExported) {
  const ClockSample sample;
  EXPECT_TRUE(Has(sample.Run({"info"}).out, "\ntimezone  8 records\n"));
  const Finished list = sample.Run({"list", "timezone"});
  EXPECT_EQ(list.code, 0) << list.messages;
  EXPECT_EQ(list.out.substr(0, list.out.find("3\tAdelaide")),
            "ID\tCity\tState\tCountry\tOffset\tHome\tActive\tDaylight time from\tto\n"
            "0\tNew York\tNY\tUSA\t-05:00\t\t\t1st Sun Apr 02:00\tlast Sun Oct 02:00\n"
            "1\tLima\t\tPeru\t-05:00\tyes\tyes\t\t\n"
            "2\tCalcutta\t\tIndia\t+05:30\tyes\tyes\t\t\n");
  const Finished show = sample.Run({"show", "timezone", "2"});
  EXPECT_EQ(show.out,
            "ID       2\nCity     Calcutta\nCountry  India\nOffset   +05:30\nHome     yes\n"
            "Active   yes\n");
  const Finished json = sample.Run({"export", "timezone"});
  EXPECT_EQ(json.out.substr(0, json.out.find(",\n")),
            "[\n  {\"id\":\"0\",\"record\":{\"City\":\"New York\",\"State\":\"NY\",\"Country\":"
            "\"USA\",\"Home\":false,\"World\":false,\"Active\":false,\"Bias\":-300,"
            "\"StandardBias\":0,\"DaylightBias\":60,\"StandardSwitch\":168100098,"
            "\"DaylightSwitch\":67174658}}");
  const Finished csv = sample.Run({"export", "timezone", "--format", "csv"});
  EXPECT_TRUE(Has(csv.out, "\r\n1,,Lima,,Peru,-05:00,yes,yes,,\r\n"));
  EXPECT_EQ(sample.Run({"export", "timezone", "--format", "vcf"}).code, 2);
  EXPECT_EQ(sample.Run({"list", "timezone", "Work"}).code, 1);
  EXPECT_EQ(sample.Run({"show", "timezone", "8"}).code, 1);
  EXPECT_EQ(sample.FlagsInFile(), "-- ha ha -- -- -- -- -- ") << "nothing was saved";
}

TEST(Clocks, ThatCannotBeReadAreToldInOneLine) {
  const ClockSample sample;
  sample.folder.Put("c/Data/Clocks.dat", sample.folder.Get("c/Data/Clocks.dat").substr(1));
  const Finished list = sample.Run({"list", "timezone"});
  EXPECT_EQ(list.code, 1);
  EXPECT_EQ(list.messages, "pairwise: " + sample.Folder() +
                               "/c/Data: CLOCKS.DAT is missing or cut, or names a city that "
                               "cityinfo.dat lacks\n");
  EXPECT_EQ(sample.Run({"info"}).code, 4);
}

}  // namespace
}  // namespace pw
