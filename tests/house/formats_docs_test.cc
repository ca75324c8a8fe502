#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include "base/text.h"
#include "calendar/data_format.h"
#include "calendar/event_days.h"
#include "calendar/event_format.h"
#include "calendar/recurring_format.h"
#include "calltask/call_format.h"
#include "calltask/frame_format.h"
#include "calltask/task_format.h"
#include "cardfile/format.h"
#include "memo/format.h"
#include "tests/house/hex_dump.h"
#include "timeplace/city_format.h"
#include "timeplace/clock_format.h"
#include "timeplace/place_format.h"

// The pages of docs/formats/ show files byte by byte: they are what the codecs read and write.
namespace pw {
namespace {

constexpr std::int32_t kMade = 888840000;  // when all of them were

std::string DumpOf(const char* page, const char* name) {
  auto dumps = test::DumpsOf(std::filesystem::path(SOURCE_FOLDER) / "docs" / "formats" / page);
  EXPECT_TRUE(dumps.contains(name)) << page << " shows no " << name;
  return dumps[name];
}

// Written anew a file is the same.
void ExpectSame(std::string_view written, std::string_view file) {
  const auto differing = std::mismatch(written.begin(), written.end(), file.begin(), file.end());
  EXPECT_TRUE(written == file) << "at " << differing.second - file.begin();
}

TEST(FormatsDocsTest, Cardfile) {
  const std::string file = DumpOf("cardfile.md", "Friends.WMCard");
  ByteReader in(file);
  ByteWriter out;
  const auto header = cardfile::DecodeHeader(in);
  cardfile::EncodeHeader(out, header);
  EXPECT_EQ(header.cards, 1);
  const auto pointer = cardfile::DecodeNamePointer(in);
  cardfile::EncodeNamePointer(out, pointer);
  EXPECT_EQ(pointer.namesOffset, cardfile::NamesOffset(1));
  cardfile::EncodeLayout(out, cardfile::DecodeLayout(in));
  const auto entry = cardfile::DecodeIndexEntry(in);
  cardfile::EncodeIndexEntry(out, entry);
  const auto keys = cardfile::DecodeKeyLine(in.Take(cardfile::kKeyLineSize));
  cardfile::EncodeKeyLine(out, JoinNonEmpty({keys.begin(), keys.end()}, cardfile::kKeySeparator));
  const auto names = cardfile::DecodeFieldNames(in.Take(in.U16()));
  const std::string block = cardfile::EncodeFieldNames(names);
  out.U16(static_cast<std::uint16_t>(block.size()));
  out.Bytes(block);
  EXPECT_EQ(names, (std::vector<std::string>{"First Name", "Last Name", "Phone"}));
  ASSERT_EQ(in.Position(), entry.bodyOffset);
  const auto body = cardfile::SplitStamp(in.Take(entry.textLength));
  EXPECT_EQ(body.stamp, std::to_string(kMade));
  EXPECT_EQ(in.Take(entry.notesLength), "Lens no. 7 is late.");
  EXPECT_EQ(in.Remaining(), 0U);
  ExpectSame(out.Written(), std::string_view(file).substr(0, entry.bodyOffset));
}

TEST(FormatsDocsTest, Binder) {
  const std::string sections = DumpOf("binder.md", "Notebook.WMWrite");
  const auto decoded = memo::DecodeSections(sections);
  ASSERT_TRUE(decoded);
  ExpectSame(memo::EncodeSections(*decoded), sections);
  EXPECT_EQ(decoded->front().name, "Notebook");

  const auto headers = memo::DecodeNoteHeaders(DumpOf("binder.md", "Notebook.WMNoteHeader"));
  ASSERT_TRUE(headers);
  ASSERT_EQ(headers->size(), 1U);
  const memo::NoteHeader& note = headers->front();
  EXPECT_EQ(note.lastChange, kMade);
  const std::string texts = DumpOf("binder.md", "Notebook.WMContent");
  EXPECT_NE(memo::SubjectOf(note, texts).find(" Gold leaf\\par"), std::string::npos);
  EXPECT_NE(memo::BodyOf(note, texts).find(" Never in a draught.\\par"), std::string::npos);
  EXPECT_EQ(memo::TextSize(note, UINT32_MAX), texts.size());
}

// The one block of a file, which the file is made of again.
std::string OnlyBlock(const std::string& file) {
  const calltask::Frame frame = calltask::ReadFrame(file);
  EXPECT_TRUE(frame.isWhole);
  ExpectSame(calltask::WriteFrame(frame.header, frame.days).value_or(""), file);
  if (frame.days.size() != 1) return {};
  EXPECT_EQ(frame.days[0].key, calltask::FilingKey(1998, 31 + 28 + 1));
  return std::string(frame.days[0].bytes);
}

TEST(FormatsDocsTest, CallsAndTasks) {
  const std::string tasks = OnlyBlock(DumpOf("calltask.md", "TASK.WMW"));
  std::string_view rest = tasks;
  calltask::RecordFields task;
  calltask::TaskWords words;
  ASSERT_TRUE(calltask::TakeTask(rest, calltask::FormatVersion::k50, task, words));
  EXPECT_EQ(task.idWord1, 4711U);
  EXPECT_EQ(task.note, "No. 7");
  EXPECT_EQ(calltask::PriorityOf(task.flags).level, 3U);
  EXPECT_EQ(calltask::DueDateOf(words.b), (calltask::Date{1998, 3, 20}));
  EXPECT_EQ(rest, std::string(95, calltask::kEmptySlot));

  const std::string calls = OnlyBlock(DumpOf("calltask.md", "CALL.WMW"));
  rest = calls;
  calltask::RecordFields call;
  calltask::Date due;
  ASSERT_TRUE(calltask::TakeCall(rest, calltask::FormatVersion::k50, call, due));
  EXPECT_EQ(call.lastChange, kMade);
  EXPECT_EQ(due, (calltask::Date{1998, 3, 6}));
  EXPECT_NE(call.flags & calltask::kCompleted, 0U);
  EXPECT_EQ(rest, std::string(95, calltask::kEmptySlot));
}

TEST(FormatsDocsTest, Events) {
  const std::string file = DumpOf("events.md", "EVEN.WMW");
  std::vector<std::string> subjects;
  std::string places;
  const auto take = [&](ByteReader& in) {
    WMEventHeader header;
    WMEventDetail detail;
    const auto damage = events::DecodeItem(in, header, detail);
    ByteWriter out;
    events::EncodeItem(out, header, detail);
    EXPECT_NE(file.find(out.Written()), std::string::npos) << detail.subject;
    subjects.push_back(detail.subject);
    places += header.place.first.text;
    return damage;
  };
  EXPECT_TRUE(events::ReadDays(file, take, [](bool counts) { EXPECT_TRUE(counts); }));
  EXPECT_EQ(subjects, (std::vector<std::string>{"Choir", "Dentist", "Dress rehearsal"}));
  EXPECT_EQ(places, "Mill Lane");
}

TEST(FormatsDocsTest, Series) {
  const std::string file = DumpOf("recurring.md", "RECR.WMW");
  const recurring::Frame frame = recurring::ReadFrame(file);
  EXPECT_TRUE(frame.damages.empty());
  ASSERT_EQ(frame.records.size(), 1U);
  recurring::Record record = recurring::DecodeRecord(frame.version, frame.records[0].bytes).record;
  ASSERT_EQ(record.exceptions.size(), 2U);
  EXPECT_TRUE(record.exceptions[0].deleted);
  EXPECT_EQ(record.key, kMade);
  // As they were before the load computed them anew.
  record.firstEnd += 90 * 60;
  record.firstStart = 0;
  ExpectSame(recurring::EncodeBody(frame.version, {&record}),
             std::string_view(file).substr(recurring::kHeaderSize));
}

TEST(FormatsDocsTest, SpecialDaysAndSpans) {
  const std::string bytes = DumpOf("data.md", "DATA.WMW");
  const datafile::File file = datafile::DecodeFile(bytes);
  EXPECT_TRUE(file.damage.empty());
  ASSERT_EQ(file.records.size(), 2U);
  const auto& day = std::get<WMSpecialDay>(file.records[0]);
  const auto& span = std::get<WMMultiDay>(file.records[1]);
  EXPECT_EQ(int{day.byDate}, 1);
  EXPECT_EQ(int{day.day}, 21);
  EXPECT_EQ(span.end - span.start, 5 * 86400);
  ExpectSame(datafile::EncodeFile(file.header, file.table, *file.version, {day}, {span}), bytes);
}

TEST(FormatsDocsTest, ClocksCitiesAndPlaces) {
  const std::string clockFile = DumpOf("clocks.md", "CLOCKS.DAT");
  ByteReader in(clockFile);
  ByteWriter out;
  std::string home;
  for (std::size_t i = 0; i < clocks::kClocks; ++i) {
    const WMClock clock = clocks::DecodeClock(in);
    if (clock.notHome == 0) home += clock.Label();
    clocks::EncodeClock(out, clock);
  }
  ExpectSame(out.Written(), clockFile);
  EXPECT_EQ(home, "New York");

  const std::string cityFile = DumpOf("cities.md", "cityinfo.dat");
  std::vector<WMCityRecord> cities;
  for (std::uint16_t i = 1; i <= city::NodeCount(cityFile.size()); ++i) {
    ByteReader node(std::string_view(cityFile).substr(city::NodeOffset(i)));
    cities.push_back(city::DecodeNode(node).record);
  }
  ExpectSame(city::EncodeCityFile(cities), cityFile);
  EXPECT_EQ(cities.at(1).offset, -500);

  EXPECT_EQ(DumpOf("cities.md", "timezone.dat").size(), 4U * 34);

  const std::string placeFile = DumpOf("cities.md", "Place List.dat");
  const places::PlaceFile list = places::Decode(placeFile);
  ExpectSame(places::Encode(list.places), placeFile);
  EXPECT_EQ(list.places, std::vector<std::string>{"Mill Lane"});
}

}  // namespace
}  // namespace pw
