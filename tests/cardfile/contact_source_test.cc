#include "cardfile/contact_source.h"

#include <gtest/gtest.h>

#include "cardfile/new_file.h"
#include "framework/engine_context.h"
#include "tests/support/card_file_builder.h"
#include "tests/support/source_fixture.h"

namespace {

using pw::test::CardFileBytes;
using pw::test::ThreeCards;

constexpr const char* kPath = "C:\\Data\\Friends.WMCard";

class ContactSourceTest : public pw::test::SourceTest {
 protected:
  ContactSourceTest() : SourceTest("contact", 2) {
    platform.clock.now = 950000000;
    category.Location = kPath;
  }

  PWRESULT Open(const std::string& bytes) {
    platform.files.Put(kPath, bytes);
    return source->Open(0);
  }
  std::string Field(const char* name) {
    PWRecord record;
    EXPECT_EQ(source->ReadRecord(&record), 0);
    const PWString* value = record.FindField(name);
    return value == nullptr ? "(none)" : value->Str();
  }
};

TEST_F(ContactSourceTest, WalksTheCards) {
  ASSERT_EQ(Open(ThreeCards().Build()), 0);
  ASSERT_EQ(source->FirstRecord(), 0);
  EXPECT_EQ(source->RecordCRC(), 0U);
  EXPECT_EQ(Field("Company"), "Acme\r\nSecond line");
  EXPECT_EQ(Field("Contact Log"), "met in May\r\nlikes tea");
  ASSERT_EQ(source->NextRecord(), 0);
  EXPECT_EQ(Field("Last Name"),
            "B\xFC"
            "cher");
}

TEST_F(ContactSourceTest, BeforeTheCursorIsPlacedThereIsNoCurrentCard) {
  ASSERT_EQ(Open(ThreeCards().Build()), 0);
  PWRecord record;
  PWField field;
  EXPECT_EQ(Id(), "");
  EXPECT_EQ(source->RecordTimeStamp(), PWDateTimeStamp());
  EXPECT_EQ(source->UpdateRecord(record), 1);
  EXPECT_EQ(source->DeleteRecord(), 1);
  EXPECT_EQ(source->GetField(0, field), 1);
  EXPECT_EQ(source->NextRecord(), 0) << "which leaves the first card out";
  EXPECT_EQ(Id(), "3");
  // Nor is there one after the source was opened again.
  source->CloseSource();
  ASSERT_EQ(source->Open(0), 0);
  EXPECT_EQ(source->UpdateRecord(record), 1);
  EXPECT_EQ(Id(), "");
}

TEST_F(ContactSourceTest, ADeletedCardsValuesAreNeverWrittenOverTheNext) {
  ASSERT_EQ(Open(ThreeCards().Build()), 0);
  source->FirstRecord();
  ASSERT_EQ(source->DeleteRecord(), 0);
  PWRecord record;
  EXPECT_EQ(source->UpdateRecord(record), 1);
  source->CloseSource();
  CardFileBytes expected = ThreeCards();
  expected.cards.erase(expected.cards.begin());
  EXPECT_EQ(platform.files.Get(kPath), expected.Build()) << "the deletion alone was saved";
}

TEST_F(ContactSourceTest, ANewCardTakesNothingFromTheCurrentOne) {
  ASSERT_EQ(Open(ThreeCards().Build()), 0);
  source->FirstRecord();
  const PWDateTimeStamp stamp = source->RecordTimeStamp();
  PWRecord record;
  record.SetField("Last Name", "\x7FJo\x7Fnes");
  ASSERT_EQ(source->AddRecord(record), 0);
  EXPECT_EQ(Id(), "8") << "the id behind the one that was seen";
  EXPECT_EQ(Field("Last Name"), "\x80Jo\x80nes");
  for (const char* name : {"First Name", "Company", "Contact Log"}) EXPECT_EQ(Field(name), "");
  source->FirstRecord();
  source->RecordTimeStamp();
  EXPECT_EQ(source->FindRecord("99"), 1);
  EXPECT_EQ(source->RecordTimeStamp(), stamp) << "off the cards it stays as it was";
}

// Without the names of the fields nothing can cross the border: no card is made or changed.
TEST_F(ContactSourceTest, AMapThatCanNotBeHadFailsTheOperation) {
  class Refusing : public WMSourceManager {
   public:
    using WMSourceManager::WMSourceManager;
    PWRESULT CategoryFieldNames(const char* type, const char* location,
                                PWStringVector& out) override {
      ++calls;
      if (calls <= made) return kResultCategoryMade;
      return WMSourceManager::CategoryFieldNames(type, location, out);
    }
    int calls = 0;
    int made = 2;  // how often a category's file is made first
  };
  Refusing refusing(0);
  refusing.Config = &config;
  source.reset(refusing.CreateSource("contact"));
  source->Category = &category;
  ASSERT_EQ(Open(ThreeCards().Build()), 0);
  source->FirstRecord();
  PWRecord record;
  record.SetField("Last Name", "Bond");
  EXPECT_EQ(source->AddRecord(record), 1);
  EXPECT_EQ(source->RecordCount(), 3U);
  refusing.made = 5;
  EXPECT_EQ(source->UpdateRecord(record), 1);
  EXPECT_EQ(source->ReadRecord(&record), 1);
  refusing.calls = 0;
  refusing.made = 1;
  source->FirstRecord();
  EXPECT_EQ(source->UpdateRecord(record), 0) << "asked once more, the manager answers";
  EXPECT_EQ(Field("Last Name"), "Bond");
}

TEST_F(ContactSourceTest, StampsAreTheMachinesLocalTime) {
  platform.clock.localOffset = -5 * 3600;
  ASSERT_EQ(Open(ThreeCards().Build()), 0);
  source->FirstRecord();
  // 917000000 is 1999-01-22 10:13:20 UTC.
  EXPECT_EQ(source->RecordTimeStamp(), PWDateTimeStamp(1999, 1, 22, 5, 13, 20));
}

TEST_F(ContactSourceTest, AddsToANewFileInPlaceOfItsBlankCard) {
  ASSERT_EQ(Open(pw::NewCardFile({"First Name", "Last Name"}, {"Last Name"})), 0);
  EXPECT_EQ(source->RecordCount(), 0U);
  EXPECT_EQ(source->FirstRecord(), 1);
  EXPECT_EQ(source->FindRecord("0"), 1) << "the blank card is none";
  EXPECT_EQ(source->DeleteRecord(), 1);
  EXPECT_EQ(Id(), "");

  PWRecord record;
  record.SetField("Last Name", "Abel\x7F");
  record.SetField("Unknown", "passed over");
  ASSERT_EQ(source->AddRecord(record), 0);
  EXPECT_EQ(source->RecordCount(), 1U);
  EXPECT_EQ(Id(), "1");
  EXPECT_EQ(Field("Last Name"), "Abel\x80") << "no value holds the stamp's marker";
  EXPECT_EQ(Field("First Name"), "");

  PWRecord again;
  again.SetField("First Name", "Ann");
  ASSERT_EQ(source->UpdateRecord(again), 0) << "the new card is the current one";
  EXPECT_EQ(Field("Last Name"), "Abel\x80");
  EXPECT_EQ(source->RecordCount(), 1U);
}

TEST_F(ContactSourceTest, AnUpdateKeepsWhatTheMapDoesNotTouch) {
  ASSERT_EQ(Open(ThreeCards().Build()), 0);
  PWRecord record;
  record.SetField("First Name", "Anna");
  EXPECT_EQ(source->UpdateRecord(record), 1) << "the cursor was never placed";
  ASSERT_EQ(source->FindRecord("7"), 0);
  ASSERT_EQ(source->UpdateRecord(record), 0);
  source->CloseSource();

  CardFileBytes expected = ThreeCards();
  expected.cards[0].title = "Abel, Anna, Acme\r\nSecond line";
  expected.cards[0].text =
      pw::test::Stamped("Anna\r\nAbel\r\nAcme\r\nSecond line\r\n", "950000000");
  EXPECT_EQ(platform.files.Get(kPath), expected.Build());
}

TEST_F(ContactSourceTest, ADeletedCardGivesItsPlaceToTheNext) {
  ASSERT_EQ(Open(ThreeCards().Build()), 0);
  source->FirstRecord();
  ASSERT_EQ(source->DeleteRecord(), 0);
  EXPECT_EQ(Id(), "3");
  ASSERT_EQ(source->NextRecord(), 0);
  EXPECT_EQ(Id(), "12") << "the card that moved up is skipped";
  ASSERT_EQ(source->DeleteRecord(), 0);
  EXPECT_EQ(source->DeleteRecord(), 1) << "nothing follows";
  EXPECT_EQ(source->RecordCount(), 1U);
}

TEST_F(ContactSourceTest, FindsByDecimalId) {
  ASSERT_EQ(Open(ThreeCards().Build()), 0);
  EXPECT_EQ(source->FindRecord(" 12"), 0);
  EXPECT_EQ(Id(), "12");
  EXPECT_EQ(source->FindRecord("12345"), 1);
  EXPECT_EQ(Id(), "") << "the cursor is behind the cards";
  PWRecord record;
  EXPECT_EQ(source->UpdateRecord(record), 1);
  EXPECT_EQ(source->FindRecord("no number"), 1) << "that looks for the id 0";
  EXPECT_EQ(source->FindRecord("4294967299"), 0) << "ids are of 32 bits";
  EXPECT_EQ(Id(), "3");
}

TEST_F(ContactSourceTest, ColumnsAreFoundByTheirExactName) {
  CardFileBytes bytes = ThreeCards();
  bytes.names = "A\r\nB\r\nA\r\n";
  ASSERT_EQ(Open(bytes.Build()), 0);
  EXPECT_EQ(source->FindField("A"), 0) << "the first of a name";
  EXPECT_EQ(source->FindField("Contact Log"), 3);
  EXPECT_EQ(source->FindField("a"), -1);
  source->FirstRecord();
  PWField field;
  EXPECT_EQ(source->GetField(1, field), 0);
  EXPECT_EQ(field.type, PWField::kText);
  EXPECT_EQ(field.text, "Abel");
  for (const std::int32_t outside : {-1, 4, 1000}) {
    EXPECT_EQ(source->GetField(outside, field), 1);
    EXPECT_EQ(source->SetField(outside, field), 1);
  }
}

TEST_F(ContactSourceTest, FieldsAreThoseOfTheEditionOrOfAChosenMap) {
  platform.registry.Set("SOFTWARE\\Main", "PRODUCT", pw::NumberValue(0));
  ASSERT_EQ(Open(ThreeCards().Build()), 0);
  source->FirstRecord();
  EXPECT_EQ(Field("Contact Log"), "(none)") << "the information manager leaves it out";
  EXPECT_EQ(Field("Company"), "Acme\r\nSecond line");

  pw::Engine().fieldMaps[{"contact", kPath}] = {{{"Surname", "Last Name"}, {"Fax", "No Such"}}};
  MakeSource();
  ASSERT_EQ(source->Open(0), 0);
  source->FirstRecord();
  EXPECT_EQ(Field("Surname"), "Abel");
  EXPECT_EQ(Field("Last Name"), "(none)");
  EXPECT_EQ(Field("Fax"), "(none)");
}

}  // namespace
