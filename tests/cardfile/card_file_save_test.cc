#include <gtest/gtest.h>

#include "cardfile/card_file.h"
#include "cardfile/new_file.h"
#include "platform/testing/test_platform.h"
#include "tests/support/card_file_builder.h"

namespace {

using pw::test::CardBytes;
using pw::test::CardFileBytes;
using pw::test::ThreeCards;
using Values = std::vector<std::string>;

constexpr const char* kPath = "C:\\Data\\Friends.WMCard";
constexpr std::int32_t kNow = 950000000;

class CardFileSaveTest : public testing::Test {
 protected:
  CardFileSaveTest() { platform.clock.now = kNow; }

  void Load(const std::string& bytes) {
    platform.files.Put(kPath, bytes);
    ASSERT_EQ(file.Load(kPath), 0);
  }
  std::string Saved() {
    file.Save();
    return platform.files.Get(kPath).value();
  }
  void Add(Values values) { file.AddCard(values); }

  pw::TestPlatform platform;
  WMCardFile file;
};

// A body as it should stand in the file, with the stamp of `kNow`.
CardBytes Fresh(std::int32_t id, std::string title, const std::string& text, std::string notes) {
  return {id, std::move(title), pw::test::Stamped(text, "950000000"), std::move(notes), 0, 0};
}

// As a file that was new, or had no bytes: what is carried from load to save is zeros.
std::string CarryingZeros(std::string image) {
  constexpr std::pair<std::size_t, std::size_t> kCarried[] = {
      {7, 3}, {12, 48}, {64, 1}, {73, 1288}};
  for (const auto& [at, width] : kCarried) image.replace(at, width, width, '\0');
  return image;
}

TEST_F(CardFileSaveTest, AnUnchangedFileIsWrittenBackByteForByte) {
  CardFileBytes bytes = ThreeCards();
  // All that a save changes on purpose: a card without a stamp gets one, and the first body's
  // offset and the word behind it are set anew.
  bytes.cards.push_back({99, "Zed", "Zed\r\n\r\n\r\n", "no stamp", 0, 0});
  Load(bytes.Build().replace(65, 8, 8, '\xEE'));
  bytes.cards.back().text = pw::test::Stamped(bytes.cards.back().text, "0");
  EXPECT_EQ(Saved(), bytes.Build());
}

TEST_F(CardFileSaveTest, CardsAreWrittenInTheExchangeSortsOrder) {
  CardFileBytes bytes = ThreeCards();
  // Titles of untouched cards are sorted as they are, also where they don't fit the values.
  const std::string text = pw::test::Stamped("1\r\n2\r\n3\r\n", "1");
  const CardBytes b{1, "b", text, "", 0, 0};
  const CardBytes capitalB{2, "B", text, "", 0, 0};
  const CardBytes a{3, "a", text, "", 0, 0};
  bytes.cards = {b, capitalB, a};
  Load(bytes.Build());
  bytes.cards = {a, capitalB, b};
  EXPECT_EQ(Saved(), bytes.Build());
}

TEST_F(CardFileSaveTest, AddedCardsStandInTheFileWithTitleAndStamp) {
  CardFileBytes bytes = ThreeCards();
  Load(bytes.Build());
  Values seen;
  file.DecodeCard(file.Card(2), seen);
  Add({"Cy", "Bond", "Bits\r\nand bytes", "log"});
  bytes.cards.insert(bytes.cards.begin() + 1, Fresh(13, "Bond, Cy, Bits\r\nand bytes",
                                                    "Cy\r\nBond\r\nBits\r\nand bytes\r\n", "log"));
  EXPECT_EQ(Saved(), bytes.Build());
}

TEST_F(CardFileSaveTest, TheBlankCardOfANewFileNeverComesBack) {
  Load(pw::NewCardFile({"First Name", "Last Name"}, {"Last Name", "First Name"}));
  EXPECT_TRUE(file.IsBlank());
  Add({"Ann", "Abel", ""});
  EXPECT_FALSE(file.IsBlank());
  EXPECT_EQ(file.CardCount(), 1U);

  CardFileBytes bytes;
  bytes.names = "First Name\r\nLast Name\r\n";
  bytes.keyLine = "Last Name, First Name";
  bytes.cards = {Fresh(1, "Abel, Ann", "Ann\r\nAbel\r\n", "")};
  EXPECT_EQ(Saved(), CarryingZeros(bytes.Build()));
}

TEST_F(CardFileSaveTest, TitlesAreTheKeysInTheirOrder) {
  const struct {
    std::string keyLine;
    Values values;
    std::string title;
  } cases[] = {
      {"Last Name, First Name, Company", {"F", "L", "C", ""}, "L, F, C"},
      {"Last Name, First Name, Company", {"", "L", "C", ""}, "L, C"},
      {"Company", {"F", "L", "C", ""}, "C"},
      {"last name", {"F", "L", "C", ""}, ""},  // case counts
      {"Contact Log, Company", {"F", "L", "C", "N"}, "N, C"},
      {"Company", {"F", "L", std::string(60, 'c'), ""}, std::string(47, 'c')},
      {"First Name", {"a\r\nb", "L", "C", ""}, "a b"},  // as it was folded
  };
  for (const auto& c : cases) {
    CardFileBytes bytes;
    bytes.keyLine = c.keyLine;
    platform.files.Put(kPath, bytes.Build());
    WMCardFile loaded;
    ASSERT_EQ(loaded.Load(kPath), 0);
    Values values = c.values;
    loaded.AddCard(values);
    EXPECT_EQ(pw::cardfile::TitleText(loaded.Card(0).index.title), c.title) << c.keyLine;
  }
  CardFileBytes bytes;
  bytes.names = "A\r\nB\r\nA\r\n";
  bytes.keyLine = "A";
  Load(bytes.Build());
  Add({"first", "", "second", ""});
  EXPECT_EQ(pw::cardfile::TitleText(file.Card(0).index.title), "second") << "the later of a name";
}

// A line break in a field before the last named one becomes a blank, but the lengths stay those of
// the text as it came: the first byte of the notes is then saved before the stamp, and zeros end
// the body. Read back, the last named field ends one byte late, and what follows it loses as many.
TEST_F(CardFileSaveTest, FoldedValuesLeaveTheLengthsAsTheyWere) {
  CardFileBytes bytes;
  Load(bytes.Build());
  Values values{"A\r\nn", "Abel", "C", "notes"};
  file.AddCard(values);
  EXPECT_EQ(values[0], "A n");
  bytes.cards = {Fresh(1, "Abel, A n, C", "A n\r\nAbel\r\nC\r\nn", std::string("otes\0", 5))};
  EXPECT_EQ(Saved(), bytes.Build());
  WMCardFile again;
  ASSERT_EQ(again.Load(kPath), 0);
  again.DecodeCard(again.Card(0), values);
  EXPECT_EQ(values, (Values{"A n", "Abel", "C\r", "otes"}));
}

TEST_F(CardFileSaveTest, AnUpdateKeepsIdAndCarriedWords) {
  CardFileBytes bytes = ThreeCards();
  Load(bytes.Build());
  Values values{"Ann", "Able", "", ""};
  file.EncodeCard(file.Card(0), values);
  EXPECT_TRUE(file.IsDirty());
  CardBytes changed = Fresh(7, "Able, Ann", "Ann\r\nAble\r\n\r\n", "");
  changed.word8 = 0x1111;
  changed.word14 = 0x2222;
  bytes.cards[0] = changed;
  EXPECT_EQ(Saved(), bytes.Build());
}

TEST_F(CardFileSaveTest, DeletedCardsAreGoneAndTheRestCloseUp) {
  CardFileBytes bytes = ThreeCards();
  Load(bytes.Build());
  file.DeleteCard(1);
  bytes.cards.erase(bytes.cards.begin() + 1);
  EXPECT_EQ(Saved(), bytes.Build());
}

TEST_F(CardFileSaveTest, ACardWithoutABodyIsSavedWithLengthsOfZero) {
  CardFileBytes bytes = ThreeCards();
  std::string image = bytes.Build();
  image.replace(1361 + 64, 4, pw::test::Word(0, 4));  // no body from the second card on
  Load(image);
  bytes.cards[1].text = bytes.cards[2].text = "";
  bytes.cards[1].notes = bytes.cards[2].notes = "";
  EXPECT_EQ(Saved(), bytes.Build());
}

TEST_F(CardFileSaveTest, FieldNamesEndBeforeTheFirstEmptyOne) {
  CardFileBytes bytes;
  bytes.names = "One\r\n\r\nTwo\r\n";
  Load(bytes.Build());
  Values names;
  file.GetFieldNames(names);
  EXPECT_EQ(names, (Values{"One", "", "Two", "Contact Log"}));
  bytes.names = "One\r\n";
  EXPECT_EQ(Saved(), bytes.Build());
}

TEST_F(CardFileSaveTest, LengthsAreCutTo16BitsAndBodiesKeepToThem) {
  CardFileBytes bytes;
  Load(bytes.Build());
  Add({"A", "long", std::string(65520, 't'), "n"});    // the stamp overflows the length
  Add({"B", "longer", std::string(70000, 't'), "n"});  // so does the text
  Add({"C", "notes", "", std::string(70000, 'n')});    // and the notes
  Add({"D", "next", "", "still in its place"});
  const std::string saved = Saved();
  WMCardFile again;
  ASSERT_EQ(again.Load(kPath), 0);
  ASSERT_EQ(again.CardCount(), 4U);
  // In the order of the titles. Of the first text and its stamp, 65,541 bytes, 5 are left.
  const struct {
    std::uint16_t text, notes;
  } lengths[] = {{5, 1}, {4477 + 10, 1}, {11 + 10, 18}, {12 + 10, 4464}};
  std::uint64_t end = 1489 + 4 * 64 + 2 + bytes.names.size();
  for (std::uint32_t i = 0; i < 4; ++i) {
    EXPECT_EQ(again.Card(i).index.bodyOffset, end);
    EXPECT_EQ(saved.substr(1361 + 64 * i + 10, 4),
              pw::test::Word(lengths[i].text, 2) + pw::test::Word(lengths[i].notes, 2));
    end += lengths[i].text + lengths[i].notes;
  }
  EXPECT_EQ(end, saved.size());
  Values values;
  again.DecodeCard(again.Card(2), values);
  EXPECT_EQ(values, (Values{"D", "next", "", "still in its place"}));
}

TEST_F(CardFileSaveTest, AFileOfNoBytesIsSavedAsOneWithoutFields) {
  Load("");
  Add({});
  CardFileBytes bytes;
  bytes.names = bytes.keyLine = "";
  bytes.cards = {Fresh(1, "", "", "")};
  EXPECT_EQ(Saved(), CarryingZeros(bytes.Build()));
}

TEST_F(CardFileSaveTest, ACountBeyond16BitsIsCutButTheOffsetsAreNot) {
  CardFileBytes bytes;
  bytes.names = "A\r\n";
  Load(bytes.Build());
  constexpr std::uint32_t kCards = 65537;
  for (std::uint32_t i = 0; i < kCards; ++i) Add({"v", ""});
  const std::string saved = Saved();
  EXPECT_EQ(saved.substr(10, 2), pw::test::Word(1, 2));
  EXPECT_EQ(saved.substr(60, 4), pw::test::Word(64 * kCards + 1489, 4));
  EXPECT_EQ(saved.substr(65, 4), pw::test::Word(64 * kCards + 1489 + 2 + 3, 4));
}

TEST_F(CardFileSaveTest, NothingIsWrittenWhereTheFileCanNotBeOpened) {
  CardFileBytes bytes = ThreeCards();
  Load(bytes.Build());
  file.DeleteCard(0);
  platform.files.FailOpen(kPath);
  EXPECT_EQ(Saved(), bytes.Build());
}

}  // namespace
