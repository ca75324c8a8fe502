#include "framework/vector.h"

#include <memory>

#include <gtest/gtest.h>

#include "framework/category.h"

namespace {

// Counts itself, so that a leak or a second deletion shows.
class Counted : public PWObject {
 public:
  explicit Counted(int& live) : live(live) { ++live; }
  ~Counted() override { --live; }
  PWObject* Clone() override { return new Counted(live); }

 private:
  int& live;
};

TEST(VectorTest, OwnsItsObjects) {
  int live = 0;
  {
    PWObjectVector vector;
    vector.Append(new Counted(live), false);
    vector.Append(new Counted(live), false);
    EXPECT_EQ(vector.Append(nullptr, false), 1);
    PWObjectVector copy;
    copy.Append(new Counted(live), false);
    copy = vector;
    EXPECT_EQ(live, 4);
    copy.Delete(0);
    EXPECT_EQ(live, 3);
    copy.Delete(5);
    EXPECT_EQ(copy.Count(), 1U);
    EXPECT_NE(copy.At(0), vector.At(1)) << "a deep copy";
  }
  EXPECT_EQ(live, 0);
}

TEST(VectorTest, OneCursorWalks) {
  PWStringVector vector;
  EXPECT_EQ(vector.Next(), nullptr) << "before any First";
  EXPECT_EQ(vector.First(), nullptr);
  EXPECT_EQ(vector.Next(), nullptr);
  for (const char* text : {"a", "b", "c"}) vector.AppendText(text);

  EXPECT_EQ(vector.First(), vector.At(0));
  EXPECT_EQ(vector.FindString("c"), vector.At(2)) << "which leaves the cursor alone";
  EXPECT_EQ(vector.FindString("C"), nullptr);
  EXPECT_EQ(vector.Next(), vector.At(1));
  EXPECT_EQ(vector.Index(vector.At(1)), 1U);
  EXPECT_EQ(vector.Next(), vector.At(2));
  EXPECT_EQ(vector.Next(), nullptr);
  EXPECT_EQ(vector.Next(), nullptr);
  const PWString stranger("a");
  EXPECT_EQ(vector.Index(&stranger), PWObjectVector::kNotFound);
}

TEST(VectorTest, AWalkGoesOnBehindADeletedObject) {
  PWStringVector vector;
  for (const char* text : {"a", "b", "c", "d"}) vector.AppendText(text);
  vector.First();
  vector.Next();
  vector.Delete(1);  // the one under the cursor
  EXPECT_TRUE(*static_cast<PWString*>(vector.Next()) == "c");
  vector.Delete(0);
  EXPECT_TRUE(*static_cast<PWString*>(vector.Next()) == "d");
}

TEST(VectorTest, ObjectsComeBackThroughAnArchiveByTheirClass) {
  PWObjectVector vector;
  vector.Append(new PWString("text"), false);
  vector.Append(new PWNumber(-7), false);
  vector.Append(new PWBitField(0x80000001), false);
  TIME_ZONE_INFORMATION zone;
  zone.Bias = 300;
  zone.DaylightDate.wMonth = 4;
  zone.DaylightName[31] = u'\x2022';
  vector.Append(new PWTimeZone(zone), false);
  auto* category = new PWSourceCategory;
  category->Name = "Friends";
  category->Location = "C:\\Friends.WMCard";
  category->AppID = 0xFFFFFFFF;
  category->Word = 3;
  category->Flag = true;
  vector.Append(category, false);
  PWArchive archive;
  vector.Serialize(archive);

  PWArchive stored(archive.Bytes());
  PWObjectVector loaded;
  loaded.Append(new PWNumber(1), false);
  loaded.Serialize(stored);
  ASSERT_EQ(loaded.Count(), 5U);
  EXPECT_TRUE(*static_cast<PWString*>(loaded.At(0)) == "text");
  EXPECT_EQ(static_cast<PWNumber*>(loaded.At(1))->value, -7);
  EXPECT_EQ(static_cast<PWBitField*>(loaded.At(2))->bits, 0x80000001U);
  EXPECT_TRUE(*static_cast<PWTimeZone*>(loaded.At(3)) == zone);
  EXPECT_EQ(static_cast<PWTimeZone*>(loaded.At(3))->zone.DaylightName[31], u'\x2022');
  const auto& copy = *static_cast<PWSourceCategory*>(loaded.At(4));
  EXPECT_TRUE(copy.Name() == "Friends");
  EXPECT_TRUE(copy.Location == "C:\\Friends.WMCard");
  EXPECT_EQ(copy.AppID, 0xFFFFFFFFU);
  EXPECT_EQ(copy.Word, 3U);
  EXPECT_TRUE(copy.Flag);
}

TEST(VectorTest, AnArchiveThatIsCutOrOfUnknownClassesGivesWhatCameBefore) {
  PWObjectVector vector;
  vector.Append(new PWString("text"), false);
  vector.Append(new PWSourceCategoryVector, false);  // a class without a record
  vector.Append(new PWString("behind"), false);
  PWArchive archive;
  vector.Serialize(archive);
  for (std::size_t size = 0; size <= archive.Bytes().size(); ++size) {
    PWArchive stored(archive.Bytes().substr(0, size));
    PWObjectVector loaded;
    loaded.Serialize(stored);
    EXPECT_LE(loaded.Count(), 1U);
  }
  PWArchive hostile(std::string("\xFF\xFF\xFF\x7F\xFF\xFF\xFF\xFFPWString", 16));
  PWObjectVector loaded;
  loaded.Serialize(hostile);
  EXPECT_LE(loaded.Count(), 1U);
}

TEST(VectorTest, ARecordIsFoundByNameForAsLongAsItLives) {
  EXPECT_EQ(PWRuntimeClass::Find("Short"), nullptr);
  {
    PWRuntimeClass record("Short", []() -> PWObject* { return nullptr; });
    PWRuntimeClass later("Later", []() -> PWObject* { return new PWNumber(5); });
    EXPECT_EQ(PWRuntimeClass::Find("Short"), &record);
    EXPECT_EQ(record.Create(), nullptr);
    EXPECT_STREQ(later.Name(), "Later");
  }
  EXPECT_EQ(PWRuntimeClass::Find("Short"), nullptr);
  const std::unique_ptr<PWObject> made(PWRuntimeClass::Find("PWStringVector")->Create());
  EXPECT_EQ(made->RuntimeClass()->Name(), std::string("PWStringVector"));
}

TEST(VectorTest, CategoriesCloneDeeplyAndAreFoundByTheirNumber) {
  PWSourceCategoryVector categories;
  for (const std::uint32_t id : {0U, 7U, 7U}) {
    auto category = std::make_unique<PWSourceCategory>();
    category->Name = "Friends";
    category->Location = "C:\\Friends.WMCard";
    category->AppID = id;
    category->Flags.Bit(1, true);
    categories.Append(category.release(), false);
  }
  const std::unique_ptr<PWObject> clone(categories.Clone());
  auto& copy = *static_cast<PWSourceCategoryVector*>(clone.get());
  PWSourceCategory* found = copy.FindByAppID(7);
  EXPECT_EQ(found, copy.At(1));
  EXPECT_EQ(copy.FindByAppID(8), nullptr);
  EXPECT_TRUE(found->Name() == "Friends");
  EXPECT_EQ(found->Flags.bits, 2U);
  EXPECT_EQ(found->Compare(found), -1);
  found->Name = "Others";
  EXPECT_TRUE(categories.At(1)->Name == "Friends");
}

}  // namespace
