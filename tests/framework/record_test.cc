#include "framework/record.h"

#include <gtest/gtest.h>

namespace {

constexpr PWPropertyId kOne{1};

TEST(RecordTest, PropertiesAreFreshUntilSetAndLive) {
  PWRecord record;
  EXPECT_TRUE(record.Text(kOne).IsEmpty());
  EXPECT_EQ(record.Stamp(kOne), PWDateTimeStamp());
  EXPECT_EQ(record.Number(kOne), 0);
  PWString& live = record.Text(kOne);
  record.Text(PWPropertyId{2}) = "other";
  live = "through the reference";
  EXPECT_TRUE(record.Text(kOne) == "through the reference");
}

TEST(RecordTest, ACopyIsDeep) {
  PWRecord record;
  record.Text(kOne) = "text";
  record.Number(kOne) = 5;
  record.Stamp(kOne).year = 1999;
  record.SetField("Name", "Ann");
  record.SetPattern(std::make_unique<PWNumber>(7));
  PWRecord copy;
  copy.SetField("Gone", "x");
  copy = record;
  record.Text(kOne) = "changed";
  static_cast<PWNumber*>(record.Pattern())->value = 8;
  record.SetField("Name", "changed");

  EXPECT_TRUE(copy.Text(kOne) == "text");
  EXPECT_EQ(copy.Number(kOne), 5);
  EXPECT_EQ(copy.Stamp(kOne).year, 1999);
  EXPECT_EQ(static_cast<PWNumber*>(copy.Pattern())->value, 7);
  ASSERT_EQ(copy.Fields().size(), 1U);
  EXPECT_TRUE(*copy.FindField("Name") == "Ann");
  copy = PWRecord();
  EXPECT_EQ(copy.Pattern(), nullptr);
}

TEST(RecordTest, FieldsKeepTheOrderInWhichTheyWereFirstSet) {
  PWRecord record;
  record.SetField("B", "1");
  record.SetField("A", "2");
  record.SetField("B", "3");
  ASSERT_EQ(record.Fields().size(), 2U);
  EXPECT_EQ(record.Fields()[0].name, "B");
  EXPECT_TRUE(record.Fields()[0].value == "3");
  EXPECT_EQ(record.FindField("b"), nullptr);
}

}  // namespace
