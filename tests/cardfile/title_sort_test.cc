#include "cardfile/title_sort.h"

#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "base/text.h"

namespace pw::cardfile {
namespace {

// The organiser's own sort, as it stands.
std::vector<std::uint32_t> PlainExchangeSort(const std::vector<std::string_view>& titles) {
  std::vector<std::uint32_t> order(titles.size());
  for (std::uint32_t i = 0; i < order.size(); ++i) order[i] = i;
  for (std::size_t i = 0; i + 1 < order.size(); ++i) {
    for (std::size_t j = i + 1; j < order.size(); ++j) {
      if (CompareIgnoringCase(titles[order[i]], titles[order[j]]) > 0) {
        std::swap(order[i], order[j]);
      }
    }
  }
  return order;
}

std::vector<std::string_view> Views(const std::vector<std::string>& texts) {
  return {texts.begin(), texts.end()};
}

// Every sequence of up to seven titles out of four.
TEST(TitleSortTest, GivesTheExchangeSortsOrderForAllSmallInputs) {
  const std::string_view letters[] = {"a", "B", "c", "D"};
  for (std::size_t size = 0; size <= 7; ++size) {
    const std::size_t sequences = std::size_t{1} << (2 * size);
    for (std::size_t code = 0; code < sequences; ++code) {
      std::vector<std::string_view> titles;
      for (std::size_t i = 0; i < size; ++i) titles.push_back(letters[(code >> (2 * i)) % 4]);
      ASSERT_EQ(ExchangeSortOrder(titles), PlainExchangeSort(titles)) << size << " " << code;
    }
  }
}

TEST(TitleSortTest, GivesTheExchangeSortsOrderWithManyTies) {
  std::mt19937 random(2);
  for (const unsigned kinds : {2U, 5U, 40U, 1000U}) {
    for (int round = 0; round < 6; ++round) {
      std::vector<std::string> texts;
      for (int i = 0; i < 700; ++i) {
        // Long common beginnings, both cases, bytes above 0x7F.
        const unsigned kind = random() % kinds;
        std::string text = kind % 2 == 0 ? "Common Name, "
                                         : "\xDC"
                                           "ber";
        text += std::to_string(kind);
        if (random() % 2 == 0) text = AsciiLower(text);
        texts.push_back(text);
      }
      ASSERT_EQ(ExchangeSortOrder(Views(texts)), PlainExchangeSort(Views(texts))) << kinds;
    }
  }
}

TEST(TitleSortTest, TitlesThatDifferInCaseAloneDoNotStayInTheirOrder) {
  // "b" brings "a" forward and goes behind its equals.
  EXPECT_EQ(ExchangeSortOrder({"b", "B", "a"}), (std::vector<std::uint32_t>{2, 1, 0}));
  EXPECT_EQ(ExchangeSortOrder({"b", "B", "b"}), (std::vector<std::uint32_t>{0, 1, 2}));
}

}  // namespace
}  // namespace pw::cardfile
