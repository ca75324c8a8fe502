#include "host/check/calendar_check.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <variant>
#include <vector>

#include "calendar/data_format.h"
#include "calendar/event_days.h"
#include "calendar/event_format.h"
#include "calendar/recurring_format.h"
#include "host/counted.h"
#include "timeplace/date.h"
#include "timeplace/year_frame.h"

namespace pw {
namespace {

std::string Expected(const char* what) {
  return std::string(what) + " was expected here";
}

struct Item {
  WMEventHeader header;
  WMEventDetail detail;
};

class EventCheck {
 public:
  explicit EventCheck(std::string_view bytes)
      : bytes(bytes), in(bytes), budget(bytes.size()), searchBudget(bytes.size()) {}

  FileCheck Run() {
    check.holds = "no events";
    frame::Header header{};
    in.TakeInto(header);
    if (in.Remaining() < frame::kYearIndexSize) {
      check.Add(bytes.size(), "626 bytes were expected at least; the calendar can't be opened");
      return check;
    }
    const std::string_view magic = frame::MagicOf(header);
    if (magic != events::kMagic50 && magic != events::kMagic40) {
      check.Add(0, "\"WMWCALE50\" or \"WMWCALE40\" was expected here; it is taken for the latter");
    }
    for (std::size_t i = 0; i < frame::kYearEntries; ++i) {
      const frame::YearEntry year = frame::DecodeYearEntry(in);
      if (year.year > 0) CheckYear(year);
    }
    check.records = plain + occurrences;
    check.holds = Counted(plain, "event", "events") + " and " +
                  Counted(occurrences, "occurrence", "occurrences") + " of version " +
                  std::to_string(events::VersionOf(header));
    if (unreached > 0) {
      check.Add(std::nullopt, "the years behind one that ends with a damaged day aren't read",
                unreached);
    }
    return check;
  }

 private:
  void CheckYear(const frame::YearEntry& year) {
    ByteReader table(bytes);
    table.Seek(year.offset);
    if (year.offset == 0 || table.Remaining() < frame::kYearTableSize) {
      check.Add(year.offset, "the table of the year " + std::to_string(1900 + year.year) +
                                 " was expected here; the calendar can't be opened");
      return;
    }
    bool isGood = true;
    for (std::size_t day = 0; day < frame::kDayEntries; ++day) {
      const std::size_t at = table.Position();
      const frame::DayEntry entry = frame::DecodeDayEntry(table);
      if (entry.size != 0) isGood = CheckDay(at, entry);
    }
    areYearsRead = areYearsRead && isGood;
  }

  bool CheckDay(std::size_t entryAt, const frame::DayEntry& entry) {
    const auto blob = frame::BlockOf(bytes, entry);
    if (!blob || budget.IsSpent()) {
      AddStrayEntry(entryAt);
      return false;
    }
    std::vector<Item> items;
    ByteReader day(*blob);
    const auto damage = events::DecodeDay(day, [&](ByteReader& rest) {
      Item& item = items.emplace_back();
      return events::DecodeItem(rest, item.header, item.detail);
    });
    budget.Spend(day.Position());
    const bool isTwice = !damage && !taken.Take(entry.offset, day.Position());
    if (isTwice) {
      AddStrayEntry(entryAt);
    } else if (!areYearsRead) {
      unreached += damage ? ItemsIn(*blob) : items.size();
    } else if (damage) {
      check.Add(entry.offset + damage->offset, Expected(damage->expected) + "; its day is left out",
                ItemsIn(*blob));
    } else {
      for (const Item& item : items) Count(item, entry.offset);
      const std::size_t end = entry.offset + day.Position();
      CheckEnd(end, day.Take(day.Remaining()));
    }
    return !damage && !isTwice;
  }

  void AddStrayEntry(std::size_t entryAt) {
    check.Add(entryAt, Expected("a day that lies within the file, and not across others,") +
                           "; all of it is left out");
  }

  // How many items begin in the bytes, as far as a day has room for them.
  std::size_t ItemsIn(std::string_view blob) {
    ByteWriter magic;
    magic.U32(events::kItemMagic);
    std::size_t count = 0;
    std::size_t at = 0;
    while (!searchBudget.IsSpent() && count < events::kPositions * events::kColumns) {
      const std::size_t next = std::min(blob.find(magic.Written(), at), blob.size());
      searchBudget.Spend(next - at + 1);
      if (next == blob.size()) break;
      at = next + 1;
      ++count;
    }
    return count;
  }

  // An event at 23:59 stands behind the last quarter of an hour, where nobody reads it.
  void CheckEnd(std::size_t at, std::string_view behind) {
    if (behind.empty()) return;
    const std::size_t late = ItemsIn(behind);
    check.Add(at,
              "the end of the day was expected here" +
                  std::string(late > 0 ? "; what is behind it is at 23:59" : ""),
              late);
  }

  void Count(const Item& item, std::size_t dayAt) {
    const bool isPlain =
        !item.detail.IsOccurrence() && (item.header.flags & events::kChangedOccurrence) == 0;
    ++(isPlain ? plain : occurrences);
    if (item.header.start < 0) {
      check.Add(dayAt, "an event before 1970 stands in this day", 1);
      return;
    }
    const std::int32_t minute = item.header.start % kSecondsPerDay / kSecondsPerMinute;
    if (minute == kMinutesOfDay - 1) {
      check.Add(dayAt, "an event at 23:59 stands in this day", 1);
      return;
    }
    // A slot begins a minute before its quarter of an hour.
    const std::int64_t day = item.header.start / kSecondsPerDay;
    const std::int64_t quarter = std::int64_t{minute / 60} * 4 + (minute % 60 + 1) / 15;
    const std::int64_t slot = day * kSlotsOfDay + quarter;
    if (++itemsOfSlot[slot] > events::kColumns) {
      check.Add(dayAt, "more than three events stand in one quarter of an hour of this day", 1);
    }
  }

  static constexpr std::int32_t kMinutesOfDay = 24 * 60;
  static constexpr std::int64_t kSlotsOfDay = 97;

  std::string_view bytes;
  ByteReader in;
  frame::ReadingBudget budget;
  frame::ReadingBudget searchBudget;
  frame::TakenBlocks taken;
  std::size_t plain = 0;
  std::size_t occurrences = 0;
  std::size_t unreached = 0;
  bool areYearsRead = true;
  std::unordered_map<std::int64_t, std::size_t> itemsOfSlot;
  FileCheck check;
};

}  // namespace

FileCheck CheckEvents(std::string_view bytes) {
  return EventCheck(bytes).Run();
}

FileCheck CheckSeries(std::string_view bytes) {
  FileCheck check;
  check.holds = "no series";
  if (bytes.empty()) return check;
  const recurring::Frame frame = recurring::ReadFrame(bytes);
  for (const recurring::Damage& damage : frame.damages) {
    check.Add(damage.offset, Expected(damage.expected));
  }
  if (!frame.hasHeader) return check;
  const bool haveKeys = frame.version == recurring::FormatVersion::k50;
  std::unordered_set<std::int32_t> keys;
  for (const recurring::StoredRecord& stored : frame.records) {
    const recurring::DecodedRecord decoded = recurring::DecodeRecord(frame.version, stored.bytes);
    const bool isRead = haveKeys && !recurring::IsNoRecord(stored.bytes);
    if (isRead && !keys.insert(decoded.record.key).second) {
      check.Add(stored.offset,
                "a series with a key of its own was expected here; one before it has the same, "
                "and which dates are whose can't be told");
    }
    if (decoded.damage) {
      // Such a record is read as a new one.
      const bool isEmptied = recurring::IsNoRecord(stored.bytes);
      check.Add(stored.offset + decoded.damage->offset, Expected(decoded.damage->expected),
                isEmptied ? 1 : 0);
    }
    if (recurring::RecordSize(frame.version, decoded.record) > recurring::kLongestRecord) {
      check.Add(stored.offset, "a series of more than 65535 bytes", 1);
    }
  }
  // What the header counts and isn't there goes at the save, whatever the reason.
  const auto counted = static_cast<std::size_t>(frame.header.count > 0 ? frame.header.count : 0);
  if (counted > frame.records.size()) {
    check.Add(recurring::kHeaderTextSize,
              Counted(counted, "series is", "series are") + " counted here, " +
                  std::to_string(frame.records.size()) + " can be read",
              counted - frame.records.size());
  }
  check.records = frame.records.size();
  check.holds = Counted(frame.records.size(), "series", "series") + " of version " +
                std::to_string(static_cast<int>(frame.version));
  return check;
}

void CheckOccurrences(std::string_view eventBytes, std::string_view seriesBytes, FileCheck& check) {
  const recurring::Frame frame = recurring::ReadFrame(seriesBytes);
  if (frame.hasHeader && frame.version != recurring::FormatVersion::k50) return;
  std::unordered_set<std::int32_t> keys;
  for (const recurring::StoredRecord& stored : frame.records) {
    keys.insert(recurring::DecodeRecord(frame.version, stored.bytes).record.key);
  }
  std::size_t stray = 0;
  std::size_t ofDay = 0;
  const auto take = [&](ByteReader& in) {
    Item item;
    auto damage = events::DecodeItem(in, item.header, item.detail);
    const bool isOccurrence =
        item.detail.IsOccurrence() || (item.header.flags & events::kChangedOccurrence) != 0;
    if (isOccurrence && keys.count(item.header.created) == 0) ++ofDay;
    return damage;
  };
  events::ReadDays(eventBytes, take, [&](bool counts) {
    if (counts) stray += ofDay;
    ofDay = 0;
  });
  if (stray == 0) return;
  check.Add(std::nullopt, Counted(stray, "occurrence is", "occurrences are") +
                              " of a series that isn't there; the organiser shows them, and "
                              "nobody else gets them");
}

FileCheck CheckTemplate(std::string_view bytes) {
  FileCheck check = CheckDataFile(bytes, true);
  // It is only ever copied.
  for (Finding& finding : check.findings) finding.lost = 0;
  check.records = 0;
  return check;
}

FileCheck CheckDataFile(std::string_view bytes, bool besideVersion50) {
  FileCheck check;
  check.holds = "no all-day entries";
  if (bytes.empty()) return check;
  const datafile::File file = datafile::DecodeFile(bytes);
  for (const datafile::Damage& damage : file.damage) {
    check.Add(damage.offset, Expected(damage.expected), damage.recordsLost);
  }
  if (!file.version) {
    check.Add(std::nullopt, "the file is read as an empty one, and replaced at the next save");
    return check;
  }
  for (std::size_t i = 0; i < datafile::kSections; ++i) {
    if (file.table[i].count <= datafile::kMostRecords) continue;
    check.Add(
        datafile::SectionEntryOffset(i),
        "923 records at most were expected in this section; what is saved behind more of them "
        "can't be found again");
  }
  const auto spans = static_cast<std::size_t>(std::count_if(
      file.records.begin(), file.records.end(),
      [](const datafile::Record& record) { return std::holds_alternative<WMMultiDay>(record); }));
  const std::size_t days = file.records.size() - spans;
  const auto version = besideVersion50 ? datafile::FormatVersion::k50 : *file.version;
  if (const std::size_t lost = datafile::LostAtSave(file, version)) {
    check.Add(std::nullopt, "the sections would stand elsewhere than their table says", lost);
  }
  check.records = file.records.size();
  check.holds = Counted(days, "special day", "special days") + " and " +
                Counted(spans, "span", "spans") + " of days, of version " +
                std::to_string(static_cast<int>(*file.version));
  return check;
}

}  // namespace pw
