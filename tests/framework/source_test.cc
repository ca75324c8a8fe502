#include "framework/source.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/crc32.h"
#include "framework/crc.h"

namespace {

// A source without records, for what `PWSource` itself does.
class Source : public PWSource {
 public:
  Source() : PWSource(nullptr, 2) {}

  PWRESULT OpenSource() override { return kResultFileMissing; }
  PWRESULT CloseSource() override { return kResultOk; }
  PWRESULT AddRecord(PWRecord&) override { return kResultFailed; }
  PWRESULT UpdateRecord(PWRecord&) override { return kResultFailed; }
  PWRESULT DeleteRecord() override { return kResultFailed; }
  PWRESULT ReadRecord(PWRecord*) override { return kResultFailed; }
  std::uint32_t RecordCount() override { return 0; }
  PWString& RecordID() override { return id; }
  PWDateTimeStamp& RecordTimeStamp() override { return stamp; }
  PWRESULT FirstRecord() override { return kResultFailed; }
  PWRESULT NextRecord() override { return kResultFailed; }
  PWRESULT FindRecord(const char*) override { return kResultFailed; }

 private:
  PWString id;
  PWDateTimeStamp stamp;
};

TEST(SourceTest, OpenLeadsToOpenSource) {
  Source source;
  EXPECT_EQ(source.Open(5), 7);
  EXPECT_EQ(source.Kind, 2U);
}

TEST(SourceTest, CrcsChainOverTextsStampsAndBytes) {
  Source source;
  const PWDateTimeStamp stamp(1999, 1, 2, 3, 4, 5);
  std::uint32_t crc = source.GenerateCRC(0, PWString("text"));
  crc = source.GenerateCRC(crc, stamp);
  crc = source.GenerateCRC(crc, "bytes", 5);
  EXPECT_EQ(crc, pw::Crc32(pw::FoldStamp(pw::FoldText(0, "text"), stamp), "bytes"));
}

}  // namespace
