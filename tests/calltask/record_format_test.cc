#include <gtest/gtest.h>

#include "calltask/call_format.h"
#include "calltask/task_format.h"

namespace {

namespace calltask = pw::calltask;
using calltask::Date;
using calltask::FormatVersion;
using calltask::RecordFields;

constexpr FormatVersion k30 = FormatVersion::k30;
constexpr FormatVersion k50 = FormatVersion::k50;

// The top bits of the words behind it stand in the mask: those of the first in bit 0 of each byte.
const std::string kIdAndChange =
    "\x81\x82\x83\x84"   // id word 1, 0x84030201
    "\xC8\xF2\xA8\xB6"   // id word 2, 0x36A8F2C8
    "\xC0\xD7\xA8\xB6";  // last change, 0x36A85740

void ExpectIdAndChange(const RecordFields& record) {
  EXPECT_EQ(record.idWord1, 0x84030201U);
  EXPECT_EQ(record.idWord2, 0x36A8F2C8U);
  EXPECT_EQ(record.lastChange, 0x36A85740);
}

TEST(CallFormatTest, EveryFieldHasItsPlace) {
  const std::string end =
      "\x81\x82\xD0\x81"  // flags: high priority, completed, recurring, and some that are carried
      "Ann\x7Fring her\x09";
  const std::string whole = "\x82\x82\x8E\x81" + kIdAndChange +
                            "\x9F\x8B\x81\x80" +  // due 31 December 2029, 0x00810B1F
                            end;
  for (const FormatVersion version : {k30, k50}) {
    const std::string bytes = version == k30 ? end : whole;
    RecordFields call;
    Date due = calltask::kNoCallDueDate;
    const std::string block = bytes + "next";
    std::string_view rest = block;
    ASSERT_TRUE(calltask::TakeCall(rest, version, call, due));
    EXPECT_EQ(rest, "next");
    EXPECT_EQ(call.flags, 0x81D08281U);
    EXPECT_EQ(call.subject, "Ann");
    EXPECT_EQ(call.note, "ring her");
    if (version == k50) ExpectIdAndChange(call);
    EXPECT_EQ(due, version == k50 ? (Date{2029, 12, 31}) : calltask::kNoCallDueDate);
    pw::ByteWriter out;
    calltask::EncodeCall(out, version, call, due);
    EXPECT_EQ(out.Written(), bytes);
  }
}

TEST(TaskFormatTest, EveryFieldHasItsPlace) {
  const std::string end =
      "\x81\x82\xC0\xEE"  // word A: digit 7, level 2, has a priority, completed, some carried
      "\xA1\xDD\xFB\xDF"  // word B: start 29 February 2000, due 31 December 2005
      "\x84\x83\x82\x81"  // word C
      "Tea\x7F\x09";
  const std::string whole = "\x82\x82\x86\x81" + kIdAndChange + "\x80\x80\x80\x80" + end;
  for (const FormatVersion version : {k30, k50}) {
    const std::string bytes = version == k30 ? end : whole;
    RecordFields task;
    calltask::TaskWords words;
    const std::string block = bytes + "next";
    std::string_view rest = block;
    ASSERT_TRUE(calltask::TakeTask(rest, version, task, words));
    EXPECT_EQ(rest, "next");
    EXPECT_EQ(task.flags, 0xEEC08281U);
    EXPECT_EQ(words.b, 0xDFFBDDA1U);
    EXPECT_EQ(words.c, 0x81828384U);
    EXPECT_EQ(task.subject, "Tea");
    EXPECT_EQ(task.note, "");
    if (version == k50) ExpectIdAndChange(task);
    EXPECT_EQ(calltask::StartDateOf(words.b), (Date{2000, 2, 29}));
    EXPECT_EQ(calltask::DueDateOf(words.b), (Date{2005, 12, 31}));
    pw::ByteWriter out;
    calltask::EncodeTask(out, version, task, words);
    EXPECT_EQ(out.Written(), bytes);
    if (version == k30) continue;
    // A due date in a call's place isn't read, and so is gone with its bits of the mask.
    std::string other = bytes;
    other.replace(0, 4, "\x8A\x8A\x8E\x89").replace(16, 4, "\x9F\x8B\x81\x80");
    rest = other;
    ASSERT_TRUE(calltask::TakeTask(rest, version, task, words));
    pw::ByteWriter again;
    calltask::EncodeTask(again, version, task, words);
    EXPECT_EQ(again.Written(), bytes);
  }
}

TEST(RecordFormatTest, TextsAreReadInTheOrganisersWay) {
  const struct {
    std::string bytes;
    bool ends;
    std::string subject, note, rest;
  } cases[] = {
      {"s\x7Fn\x09r", true, "s", "n", "r"},
      {"s\x7F\x09r", true, "s", "", "r"},
      {"\x7Fn\x09r", true, "", "\x7Fn", "r"},
      {"\x7F\x09r", true, "", "\x7F", "r"},
      {"\x09r", true, "", "", "r"},
      {"s\x09next\x7Fn\x09r", true, "s", "next\x7Fn", "r"},
      {"s\x7Fm\x7Fn\x09", true, "s", "m\x7Fn", ""},
      {"\x10s\x10\x7F~\x10\x09", true, "~s~", "~~", ""},
      {std::string("s\0t\x7F\0\x09", 6), true, std::string("s\0t", 3), std::string("\0", 1), ""},
      {"s\x7Fn", false, "", "", ""},
      {"s\x7F", false, "", "", ""},
      {"s", false, "", "", ""},
      {"", false, "", "", ""},
  };
  for (const auto& each : cases) {
    RecordFields record;
    std::string_view rest = each.bytes;
    ASSERT_EQ(calltask::TakeTexts(rest, record), each.ends) << each.bytes;
    if (!each.ends) continue;
    EXPECT_EQ(record.subject, each.subject);
    EXPECT_EQ(record.note, each.note);
    EXPECT_EQ(rest, each.rest);
    pw::ByteWriter out;
    calltask::EncodeTexts(out, record);
    EXPECT_EQ(out.Written(), each.subject + '\x7F' + each.note + '\x09') << "nothing is escaped";
  }
  std::string text = "\x7F~\x10\x09\x09";
  calltask::MakeStorable(text);
  EXPECT_EQ(text, " ~\x10  ");
}

// Whole or not, a record is refused where the organiser sees too few bytes for one.
TEST(RecordFormatTest, TheEndOfABlockIsToldByWhatIsLeft) {
  const auto takes = [](bool isCall, FormatVersion version, std::size_t words,
                        const std::string& texts) {
    const std::string bytes = std::string(words, '\x80') + texts;
    std::string_view rest = bytes;
    RecordFields record;
    Date due;
    calltask::TaskWords taskWords;
    return isCall ? calltask::TakeCall(rest, version, record, due)
                  : calltask::TakeTask(rest, version, record, taskWords);
  };
  EXPECT_FALSE(takes(true, k30, 4, "12345\x7F\x09"));
  EXPECT_TRUE(takes(true, k30, 4, "123456\x7F\x09"));
  EXPECT_TRUE(takes(true, k30, 4, "\x7F\x09      ")) << "a short one with more behind it";
  EXPECT_TRUE(takes(true, k50, 24, "\x7F\x09"));
  EXPECT_TRUE(takes(true, k50, 24, "\x09"));
  EXPECT_FALSE(takes(true, k50, 23, "\x09"));
  EXPECT_TRUE(takes(false, k30, 12, "\x09"));
  EXPECT_FALSE(takes(false, k30, 10, "\x09"));
  EXPECT_TRUE(takes(false, k50, 32, "\x09"));
  EXPECT_FALSE(takes(false, k50, 30, "\x09"));
}

TEST(CallFormatTest, ADueDateIsAWordOrNone) {
  const struct {
    Date date;
    std::uint32_t word;
  } cases[] = {{{1900, 1, 0}, 0},           {{1900, 5, 5}, 0},          {{2000, 0, 5}, 0},
               {{2000, 5, 0}, 0},           {{1901, 1, 1}, 0x00010001}, {{1990, 2, 28}, 0x005A011C},
               {{2029, 12, 31}, 0x00810B1F}};
  for (const auto& each : cases) {
    EXPECT_EQ(calltask::EncodeCallDueDate(each.date), each.word) << each.date.year;
    const Date read = each.word == 0 ? calltask::kNoCallDueDate : each.date;
    EXPECT_EQ(calltask::DecodeCallDueDate(each.word), read);
  }
  for (const std::uint32_t word : {0x00000B1FU, 0x00650100U}) {
    EXPECT_EQ(calltask::EncodeCallDueDate(calltask::DecodeCallDueDate(word)), 0U) << word;
  }
}

TEST(TaskFormatTest, WordBHoldsTwoDatesOf1990To2005) {
  const struct {
    Date set, read;
    std::uint32_t half;
  } cases[] = {
      {{0, 0, 0}, {1990, 1, 0}, 0x8080},          {{1990, 1, 1}, {1990, 1, 1}, 0x8180},
      {{1980, 6, 15}, {1990, 6, 15}, 0x8F85},     {{1997, 12, 31}, {1997, 12, 31}, 0x9FFB},
      {{1998, 1, 1}, {1998, 1, 1}, 0xC180},       {{2012, 2, 29}, {2005, 2, 29}, 0xDDF1},
      {{2000, 255, 255}, {2000, 15, 31}, 0xDFAE},
  };
  for (const auto& each : cases) {
    for (const std::uint32_t before : {0x80808080U, 0xDFFFDFFFU, 0xFFFFFFFFU, 0x00000000U}) {
      const std::uint32_t start = calltask::WithStartDate(before, each.set);
      EXPECT_EQ(start, (before & 0xFFFF0000) | each.half);
      EXPECT_EQ(calltask::StartDateOf(start), each.read);
      const std::uint32_t due = calltask::WithDueDate(before, each.set);
      EXPECT_EQ(due, (before & 0xFFFF) | each.half << 16);
      EXPECT_EQ(calltask::DueDateOf(due), each.read);
    }
  }
}

TEST(TaskFormatTest, APriorityLeavesTheRestOfWordAAlone) {
  for (const std::uint32_t before : {0x80808080U, 0xFFFFFFFFU, 0xC1FFFFFFU, 0x01234567U}) {
    for (std::uint32_t digit = 0; digit < 8; ++digit) {
      for (std::uint32_t level = 0; level < 4; ++level) {
        const std::uint32_t word = calltask::WithPriority(before, {digit, level});
        EXPECT_EQ(word & ~0x3E000000U, (before & ~0x3E000000U) | 0x80808080U);
        EXPECT_EQ(calltask::PriorityOf(word).digit, digit);
        EXPECT_EQ(calltask::PriorityOf(word).level, level);
      }
    }
  }
}

}  // namespace
