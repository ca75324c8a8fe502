#include <gtest/gtest.h>

#include "cardfile/card_file.h"
#include "platform/testing/test_platform.h"
#include "tests/support/card_file_builder.h"

namespace {

using pw::test::ThreeCards;
using Values = std::vector<std::string>;

constexpr const char* kPath = "C:\\Data\\Friends.WMCard";

class CardFileDamageTest : public testing::Test {
 protected:
  // Loads, reads every card, changes, saves and loads what was saved. The number of cards.
  std::uint32_t Exercise(const std::string& bytes) {
    platform.files.Put(kPath, bytes);
    WMCardFile file;
    EXPECT_EQ(file.Load(kPath), 0);
    const std::uint32_t count = file.CardCount();
    Values names;
    file.GetFieldNames(names);
    Values values;
    for (std::uint32_t i = 0; i < count; ++i) {
      file.DecodeCard(file.Card(i), values);
      EXPECT_EQ(values.size(), names.size());
    }
    values.assign(names.size(), "new");
    file.AddCard(values);
    const std::uint32_t saved = file.CardCount();
    file.Save();
    WMCardFile again;
    EXPECT_EQ(again.Load(kPath), 0);
    EXPECT_EQ(again.CardCount(), saved & 0xFFFF);
    return count;
  }

  pw::TestPlatform platform;
};

TEST_F(CardFileDamageTest, CountsAndLengthsAtTheirExtremes) {
  const std::string whole = ThreeCards().Build();
  const std::size_t second = 1361 + 64;
  const struct {
    std::size_t at;
    std::string bytes;
  } words[] = {
      {10, "\xFF\xFF"},  // cards
      {10, std::string(2, '\0')},
      {60, "\xFF\xFF\xFF\xFF"},  // where the names are
      {60, std::string(4, '\0')},
      {second, "\xFF\xFF\xFF\xFF"},         // where a body is
      {second + 4, "\xFF\xFF\xFF\x7F"},     // the highest id
      {second + 4, "\xFF\xFF\xFF\xFF"},     // a negative one
      {second + 10, "\xFF\xFF\xFF\xFF"},    // lengths of text and notes
      {second + 16, std::string(48, 'T')},  // a title without an end
      {1489 + 3 * 64, "\xFF\xFF"},          // size of the names
  };
  for (const auto& word : words) {
    std::string damaged = whole;
    damaged.replace(word.at, word.bytes.size(), word.bytes);
    const std::uint32_t count = pw::ByteReader(damaged.substr(10, 2)).U16();
    EXPECT_EQ(Exercise(damaged), count) << word.at;
  }
}

// Each index entry may point to the same bytes: loading must not copy them for each.
TEST_F(CardFileDamageTest, ManyCardsOverOneBodyAreViewsOfTheFile) {
  constexpr std::size_t kCards = 65535;
  pw::test::CardFileBytes bytes;
  const pw::test::CardBytes card{1, "t", std::string(65535, 't'), std::string(65535, 'n'), 0, 0};
  bytes.cards.assign(kCards, {});
  std::string image = bytes.Header();
  for (std::size_t i = 0; i < kCards; ++i) image += bytes.IndexEntry(card, bytes.FirstBody());
  image += std::string(128, '\0') + pw::test::Word(bytes.names.size(), 2) + bytes.names;
  image += card.text + card.notes;

  platform.files.Put(kPath, image);
  WMCardFile file;
  ASSERT_EQ(file.Load(kPath), 0);
  ASSERT_EQ(file.CardCount(), kCards);
  const char* first = file.Card(0).text.data();
  for (std::uint32_t i = 0; i < kCards; ++i) {
    ASSERT_EQ(file.Card(i).text.data(), first);
    ASSERT_EQ(file.Card(i).owned, nullptr);
  }
  // What a save would have to write is beyond the offsets of the format: the file stays.
  file.DeleteCard(0);
  file.Save();
  EXPECT_EQ(platform.files.Get(kPath).value().size(), image.size());
}

}  // namespace
