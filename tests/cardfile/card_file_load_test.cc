#include <gtest/gtest.h>

#include "cardfile/card_file.h"
#include "platform/testing/test_platform.h"
#include "tests/support/card_file_builder.h"
#include "tests/support/other_files.h"

namespace {

using pw::test::CardFileBytes;
using pw::test::ThreeCards;
using Values = std::vector<std::string>;

constexpr const char* kPath = "C:\\Data\\Friends.WMCard";

class CardFileLoadTest : public testing::Test {
 protected:
  std::int32_t Load(const std::string& bytes) {
    platform.files.Put(kPath, bytes);
    return file.Load(kPath);
  }
  Values Names() {
    Values names;
    file.GetFieldNames(names);
    return names;
  }
  Values Card(std::uint32_t index) {
    Values values;
    file.DecodeCard(file.Card(index), values);
    return values;
  }

  // Loads a good file, which the platform opens as a `BadFile`.
  template <class BadFile>
  void ExpectLoadFails() {
    platform.files.Put(kPath, ThreeCards().Build());
    const pw::test::InPlaceOfFiles<pw::test::OpenAs<BadFile>> bad;
    EXPECT_EQ(WMCardFile().Load(kPath), -1);
  }

  // The values of one card whose text and notes are given, in a file of these field names.
  static Values ValuesOf(const std::string& names, const std::string& text,
                         const std::string& notes) {
    pw::TestPlatform own;
    CardFileBytes bytes;
    bytes.names = names;
    bytes.cards = {{1, "t", text, notes}, {2, "u", "x\r\n", ""}};
    own.files.Put(kPath, bytes.Build());
    WMCardFile loaded;
    EXPECT_EQ(loaded.Load(kPath), 0);
    Values values;
    loaded.DecodeCard(loaded.Card(0), values);
    return values;
  }

  pw::TestPlatform platform;
  WMCardFile file;
};

TEST_F(CardFileLoadTest, ReadsNamesCardsAndStamps) {
  ASSERT_EQ(Load(ThreeCards().Build()), 0);
  EXPECT_EQ(Names(), (Values{"First Name", "Last Name", "Company", "Contact Log"}));
  ASSERT_EQ(file.CardCount(), 3U);
  EXPECT_EQ(Card(0), (Values{"Ann", "Abel", "Acme\r\nSecond line", "met in May\r\nlikes tea"}));
  EXPECT_EQ(Card(1), (Values{"Bo",
                             "B\xFC"
                             "cher",
                             "", ""}));
  EXPECT_EQ(Card(2), (Values{"", "", "Corp", "n"}));
  EXPECT_EQ(file.Card(0).timeStamp, 917000000);
  EXPECT_EQ(file.Card(1).timeStamp, -5);
  EXPECT_EQ(file.Card(0).index.id, 7);
  EXPECT_FALSE(file.IsDirty());
  EXPECT_FALSE(file.IsBlank());
}

TEST_F(CardFileLoadTest, AnEmptyFileIsAnEmptyStoreWithoutAnyField) {
  ASSERT_EQ(Load(""), 0);
  EXPECT_EQ(file.CardCount(), 0U);
  EXPECT_EQ(Names(), Values());
  Values none;
  EXPECT_EQ(file.AddCard(none), 0);
  EXPECT_EQ(file.CardCount(), 1U);
  EXPECT_EQ(Card(0), Values());
}

TEST_F(CardFileLoadTest, AMissingFileAndAShortHeaderFail) {
  EXPECT_EQ(file.Load("C:\\Data\\Nobody.WMCard"), -1);
  EXPECT_EQ(Load(std::string(59, 'x')), -1);
}

TEST_F(CardFileLoadTest, OnlyAFileThatCanBeReadAndWrittenIsLoaded) {
  platform.files.Put(kPath, ThreeCards().Build());
  const auto other =
      platform.files.Open(kPath, pw::OpenMode::kReadWriteExisting, pw::Sharing::kReadWrite);
  EXPECT_EQ(WMCardFile().Load(kPath), 0) << "others may have it open";
  platform.files.SetReadOnly(kPath, true);
  EXPECT_EQ(file.Load(kPath), -1);
}

// A disk error must not pass for an empty file, which the next save would make true.
TEST_F(CardFileLoadTest, AFileThatCanNotBeReadFails) {
  ExpectLoadFails<pw::test::UnreadableFile>();
  ExpectLoadFails<pw::test::FileOfSize<-1>>();
  ExpectLoadFails<pw::test::FileOfSize<std::int64_t{1} << 32>>();
}

TEST_F(CardFileLoadTest, AFileThatEndsBehindItsHeaderHasItsCardsButNoFields) {
  ASSERT_EQ(Load(ThreeCards().Build().substr(0, 1360)), 0);
  EXPECT_EQ(file.CardCount(), 3U);
  EXPECT_EQ(Names(), Values());
  EXPECT_EQ(Card(2), Values());
}

TEST_F(CardFileLoadTest, NamesAreFoundThroughTheirPointerAlone) {
  CardFileBytes bytes = ThreeCards();
  std::string image = bytes.Build();
  const std::string names = "Elsewhere\r\n";
  image.replace(60, 4, pw::test::Word(static_cast<std::uint32_t>(image.size()), 4));
  image += pw::test::Word(static_cast<std::uint32_t>(names.size()), 2) + names;
  ASSERT_EQ(Load(image), 0);
  EXPECT_EQ(Names(), (Values{"Elsewhere", "Contact Log"}));
}

// What is there of an index entry or a key line that the file's end cuts.
TEST_F(CardFileLoadTest, ACutEntryKeepsWhatCameAndACutKeyLineIsNone) {
  const std::string whole = ThreeCards().Build();
  const std::size_t third = 1361 + 2 * 64;
  ASSERT_EQ(Load(whole.substr(0, third + 4 + 1)), 0);
  EXPECT_EQ(file.Card(2).index.id, 12);
  EXPECT_NE(file.Card(2).index.bodyOffset, 0U);
  EXPECT_EQ(Names(), Values{"Contact Log"})
      << "the names can't be reached, the log is always there";

  CardFileBytes bytes = ThreeCards();
  bytes.keyLine = "x";
  for (const std::size_t keyBytes : {127U, 128U}) {
    std::string image = bytes.Build().substr(0, 1361 + 3 * 64 + keyBytes);
    image.replace(60, 4, pw::test::Word(0, 4));  // names that are found at the file's very start
    image.replace(0, 5, std::string("\x03\0x\r\n", 5));
    platform.files.Put(kPath, image);
    WMCardFile cut;
    ASSERT_EQ(cut.Load(kPath), 0);
    Values values{"Abel", ""};
    cut.AddCard(values);
    EXPECT_EQ(pw::cardfile::TitleText(cut.Card(3).index.title), keyBytes == 128 ? "Abel" : "");
  }
}

TEST_F(CardFileLoadTest, OneCardWithoutNotesAndWithNoMoreThanLineEndsIsBlank) {
  const struct {
    std::string text, notes;
    bool blank;
  } cases[] = {
      {"", "", true},
      {"\r\n\r\n\r\n", "", true},
      {"ab\x7Fxyz", "", true},  // six bytes are no more than three line ends
      {"ab\x7Fwxyz", "", false},
      {"\r\n\r\n\r\n", "n", false},
  };
  for (const auto& c : cases) {
    CardFileBytes bytes;
    bytes.cards = {{5, "", c.text, c.notes}};
    platform.files.Put(kPath, bytes.Build());
    WMCardFile loaded;
    ASSERT_EQ(loaded.Load(kPath), 0);
    EXPECT_EQ(loaded.IsBlank(), c.blank) << c.text << "|" << c.notes;
    EXPECT_EQ(loaded.CardCount(), 1U);
  }
}

TEST_F(CardFileLoadTest, ValuesEndWhereTheOrganiserEndsThem) {
  const std::string three = "A\r\nB\r\nC\r\n";
  const struct {
    std::string names, text, notes;
    Values values;
  } cases[] = {
      {three, "1\r\n2\r\n3\r\n", "n", {"1", "2", "3", "n"}},
      // The last named field has line breaks of its own, and ends with the text.
      {three, "1\r\n2\r\n3\r\n4\r\n", "n\r\nm", {"1", "2", "3\r\n4", "n\r\nm"}},
      // Too few line ends: a field reads into the notes, and what is behind the text is passed
      // over.
      {three, "1\r\n", "2\r\n3", {"1", "2", "", ""}},
      {three, "123", "n", {"123n", "", "", ""}},
      // The position stands behind the end of the text: nothing is copied, two bytes are skipped.
      {three, "1\r\n2\r\n", "notes", {"1", "2", "", "tes"}},
      {three, "x", "", {"x", "", "", ""}},
      // The contact log ends at a zero byte, no other field does.
      {three,
       std::string("1\0a\r\n2\r\n3\r\n", 11),
       std::string("n\0m", 3),
       {std::string("1\0a", 3), "2", "3", "n"}},
      // One named field is the last named one; with none the log is all there is.
      {"A\r\n", "1\r\n2\r\n", "n", {"1\r\n2", "n"}},
      {"", "1\r\n", "n", {"1\r\nn"}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ValuesOf(c.names, c.text, c.notes), c.values) << c.text << "|" << c.notes;
  }
}

TEST_F(CardFileLoadTest, ACardWithoutOffsetOrTextEndsTheReadingOfBodies) {
  for (const bool withOffset : {true, false}) {
    CardFileBytes bytes = ThreeCards();
    std::string image = bytes.Build();
    const std::size_t second = 1361 + 64;
    if (withOffset) {
      image.replace(second + 10, 2, pw::test::Word(0, 2));
    } else {
      image.replace(second, 4, pw::test::Word(0, 4));
    }
    platform.files.Put(kPath, image);
    WMCardFile loaded;
    ASSERT_EQ(loaded.Load(kPath), 0);
    EXPECT_TRUE(loaded.Card(0).hasBody);
    EXPECT_FALSE(loaded.Card(1).hasBody);
    EXPECT_FALSE(loaded.Card(2).hasBody);
    Values values{"left over"};
    loaded.DecodeCard(loaded.Card(2), values);
    EXPECT_EQ(values, (Values{"", "", "", ""}));
  }
}

TEST_F(CardFileLoadTest, ABodyThatEndsEarlyKeepsWhatCameAndTheNextCardIsRead) {
  CardFileBytes bytes = ThreeCards();
  std::string image = bytes.Build();
  // The first card's body is said to stand 12 bytes before the end, where "917000001n" ends the
  // file.
  image.replace(1361, 4, pw::test::Word(static_cast<std::uint32_t>(image.size() - 12), 4));
  ASSERT_EQ(Load(image), 0);
  EXPECT_EQ(file.Card(0).timeStamp, 0) << "no marker is looked for";
  const std::size_t text = bytes.cards[0].text.size();
  EXPECT_EQ(file.Card(0).index.textLength, text);
  EXPECT_EQ(Card(0)[0].substr(0, 12),
            "\n\x7F"
            "917000001n");
  EXPECT_EQ(Card(1)[0], "Bo");
}

TEST_F(CardFileLoadTest, IdsAreSignedAndLearnedByDecodingOnly) {
  CardFileBytes bytes = ThreeCards();
  bytes.cards[0].id = -2;
  bytes.cards.push_back(bytes.cards[1]);
  bytes.cards[3].id = 40;
  std::string image = bytes.Build();
  image.replace(1361 + 3 * 64, 4, pw::test::Word(0, 4));  // the fourth card has no body
  ASSERT_EQ(Load(image), 0);
  const auto idOfNew = [&] {
    Values values(4, "x");
    file.AddCard(values);
    return file.Card(file.CardCount() - 1).index.id;
  };
  Card(0);
  EXPECT_EQ(idOfNew(), 1) << "12 was never looked at";
  Card(2);
  EXPECT_EQ(idOfNew(), 13);
  Card(1);
  EXPECT_EQ(idOfNew(), 14) << "a smaller id changes nothing";
  Card(3);
  EXPECT_EQ(idOfNew(), 41);
}

TEST_F(CardFileLoadTest, FindsTheFirstCardOfAnIdThroughChanges) {
  CardFileBytes bytes = ThreeCards();
  bytes.cards.push_back(bytes.cards[1]);  // the id 3 a second time
  ASSERT_EQ(Load(bytes.Build()), 0);
  EXPECT_EQ(file.FindCard(3), 1U);
  EXPECT_EQ(file.FindCard(99), std::nullopt);
  file.DeleteCard(0);
  EXPECT_EQ(file.FindCard(7), std::nullopt);
  EXPECT_EQ(file.FindCard(3), 0U);
  file.DeleteCard(0);
  EXPECT_EQ(file.FindCard(3), 1U);
  Values values(4, "x");
  file.AddCard(values);
  EXPECT_EQ(file.FindCard(file.Card(2).index.id), 2U);
  file.DeleteCard(77);
  EXPECT_EQ(file.CardCount(), 3U);
}

}  // namespace
