#include "host/formats/calendar_reader.h"

#include <algorithm>
#include <map>
#include <utility>

#include "base/codepage.h"
#include "base/text.h"
#include "host/formats/calendar_component.h"
#include "host/formats/content_line.h"
#include "host/formats/icalendar.h"
#include "host/formats/stamp_text.h"
#include "host/formats/text_value.h"
#include "host/formats/transfer_encoding.h"

namespace pw {
namespace {

constexpr std::size_t kDeepest = 4;
constexpr std::size_t kDateLength = 8;
constexpr std::int64_t kMostSeconds = INT32_MAX;

// A text in UTF-8 with the organiser's line breaks; that of our own property where it has one.
std::string TextOf(const CalendarComponent& component, const std::string& name,
                   std::vector<std::string>& remarks) {
  const std::string ownName = std::string(kOwnPrefix) + name;
  if (const ContentLine* exact = FindLine(component, ownName)) {
    if (auto bytes = DecodeBase64(exact->value)) return *bytes;
    remarks.push_back(ownName + " is damaged, and " + name + " is taken in its place");
  }
  return WithLineBreaks(UnescapeText(ValueOf(component, name)));
}

CalendarTime TimeOf(const ContentLine& line, std::string_view value) {
  const ContentParameter* zone = line.Find("TZID");
  CalendarTime time{std::string(value), {}};
  if (zone != nullptr && !zone->values.empty()) time.zone = zone->values.front();
  return time;
}

// Whether there are periods among them, of which only the start is taken.
bool TakeTimes(const CalendarComponent& component, std::string_view name,
               std::vector<CalendarTime>& times) {
  bool arePeriods = false;
  for (const ContentLine& line : component.lines) {
    if (!EqualIgnoringCase(line.name, name)) continue;
    for (const std::string_view value : SplitValue(line.value, ',')) {
      const std::string_view start = value.substr(0, value.find('/'));
      arePeriods = arePeriods || start.size() < value.size();
      times.push_back(TimeOf(line, start));
    }
  }
  return arePeriods;
}

// "1998-03-02" of a date or a moment, or of a property of our own as it is.
std::string DateOf(const CalendarComponent& component, const std::string& name,
                   std::vector<std::string>& remarks) {
  const std::string exact = ValueOf(component, std::string(kOwnPrefix) + name);
  if (!exact.empty()) return UnescapeText(exact);
  const std::string value = ValueOf(component, name);
  if (value.empty()) return {};
  if (!HasForm(std::string_view(value).substr(0, kDateLength), "99999999")) {
    remarks.push_back(name + " can't be read, and is left out");
    return {};
  }
  if (value.size() > kDateLength) remarks.push_back("the time of " + name + " is left out");
  return value.substr(0, 4) + "-" + value.substr(4, 2) + "-" + value.substr(6, 2);
}

TodoPriority PriorityOf(const std::string& value) {
  const std::int32_t number = ParseLong(value);
  if (number >= 1 && number <= 4) return TodoPriority::kHigh;
  return number >= 6 && number <= 9 ? TodoPriority::kLow : TodoPriority::kNormal;
}

bool IsCancelled(const CalendarComponent& component) {
  return EqualIgnoringCase(ValueOf(component, "STATUS"), "CANCELLED");
}

std::size_t CountAlarms(const CalendarComponent& component) {
  return static_cast<std::size_t>(
      std::count_if(component.inner.begin(), component.inner.end(),
                    [](const CalendarComponent& inner) { return inner.name == "VALARM"; }));
}

ReadTodo TodoOf(const CalendarComponent& component) {
  ReadTodo read;
  read.line = component.line;
  Todo& todo = read.todo;
  todo.uid = ValueOf(component, "UID");
  todo.subject = TextOf(component, "SUMMARY", read.remarks);
  todo.note = TextOf(component, "DESCRIPTION", read.remarks);
  todo.start = DateOf(component, "DTSTART", read.remarks);
  todo.due = DateOf(component, "DUE", read.remarks);
  todo.priority = PriorityOf(ValueOf(component, "PRIORITY"));
  todo.completed = EqualIgnoringCase(ValueOf(component, "STATUS"), "COMPLETED") ||
                   FindLine(component, "COMPLETED") != nullptr;
  todo.call = FindLine(component, std::string(kOwnPrefix) + "CALL") != nullptr;
  read.isCancelled = IsCancelled(component);
  if (CountAlarms(component) > 0) read.remarks.emplace_back("a to-do item has no alarm");
  const std::string leftOut = LeftOutOf(component);
  if (!leftOut.empty()) read.remarks.push_back(leftOut);
  return read;
}

std::optional<EventAccess> AccessOf(const std::string& value) {
  if (value.empty()) return std::nullopt;
  if (EqualIgnoringCase(value, "PRIVATE")) return EventAccess::kPersonal;
  return EqualIgnoringCase(value, "CONFIDENTIAL") ? EventAccess::kPrivate : EventAccess::kPublic;
}

// Minutes before the start; nothing for an alarm that goes by anything else.
std::optional<std::int32_t> LeadOf(const CalendarComponent& alarm) {
  const ContentLine* trigger = FindLine(alarm, "TRIGGER");
  if (trigger == nullptr) return std::nullopt;
  const ContentParameter* related = trigger->Find("RELATED");
  const bool isOfEnd = related != nullptr && !related->values.empty() &&
                       EqualIgnoringCase(related->values.front(), "END");
  const auto seconds = ReadDuration(trigger->value);
  if (!seconds || isOfEnd || *seconds > 0) return std::nullopt;
  return -*seconds / 60;
}

// The first of its alarms that the organiser can have; the others are remarked.
void TakeAlarm(const CalendarComponent& component, ReadEvent& read) {
  for (const CalendarComponent& inner : component.inner) {
    if (read.event.alarmLead || inner.name != "VALARM") continue;
    read.event.alarmLead = LeadOf(inner);
  }
  const std::size_t leftOut = CountAlarms(component) - (read.event.alarmLead ? 1 : 0);
  if (leftOut == 0) return;
  read.remarks.push_back(std::to_string(leftOut) +
                         " of its alarms left out, as the organiser has one, before the start");
}

// What is said of a series in a way that no record can be.
void RemarkSeries(const CalendarComponent& component, bool arePeriods, ReadEvent& read) {
  if (arePeriods) {
    read.remarks.emplace_back("the lengths of its dates in RDATE are left out, and are its own");
  }
  const ContentLine* replaced = FindLine(component, "RECURRENCE-ID");
  const ContentParameter* range = replaced == nullptr ? nullptr : replaced->Find("RANGE");
  if (range != nullptr && !range->values.empty()) {
    read.remarks.push_back("its RANGE is left out, so that the change is one of " +
                           replaced->value + " alone");
  }
}

std::optional<CalendarTime> OneTime(const CalendarComponent& component, std::string_view name) {
  const ContentLine* line = FindLine(component, name);
  if (line == nullptr) return std::nullopt;
  return TimeOf(*line, line->value);
}

void TakeDuration(const CalendarComponent& component, ReadEvent& read) {
  const std::string value = ValueOf(component, "DURATION");
  if (value.empty()) return;
  read.duration = ReadDuration(value);
  if (!read.duration) read.remarks.emplace_back("DURATION can't be read, and is left out");
}

// Nothing without a start.
std::optional<ReadEvent> EventOf(const CalendarComponent& component) {
  const auto start = OneTime(component, "DTSTART");
  if (!start) return std::nullopt;
  ReadEvent read;
  read.line = component.line;
  Event& event = read.event;
  event.uid = ValueOf(component, "UID");
  event.subject = TextOf(component, "SUMMARY", read.remarks);
  event.notes = TextOf(component, "DESCRIPTION", read.remarks);
  event.location = TextOf(component, "LOCATION", read.remarks);
  event.start = *start;
  event.end = OneTime(component, "DTEND");
  if (!event.end) TakeDuration(component, read);
  TakeAlarm(component, read);
  event.access = AccessOf(ValueOf(component, "CLASS"));
  event.rule = ValueOf(component, "RRULE");
  event.replaced = OneTime(component, "RECURRENCE-ID");
  const bool arePeriods = TakeTimes(component, "RDATE", event.dates);
  TakeTimes(component, "EXDATE", event.deleted);
  read.isCancelled = IsCancelled(component);
  RemarkSeries(component, arePeriods, read);
  const std::string leftOut = LeftOutOf(component);
  if (!leftOut.empty()) read.remarks.push_back(leftOut);
  return read;
}

// Minutes of "+0130" or "-053000".
std::optional<std::int32_t> OffsetOf(std::string_view value) {
  if (value.size() < 5 || (value[0] != '+' && value[0] != '-')) return std::nullopt;
  if (!HasForm(value.substr(1, 4), "9999")) return std::nullopt;
  const std::int32_t minutes = ParseLong(value.substr(1, 2)) * 60 + ParseLong(value.substr(3, 2));
  return value[0] == '-' ? -minutes : minutes;
}

ReadZone ZoneOf(const CalendarComponent& component) {
  ReadZone zone;
  zone.name = ValueOf(component, "TZID");
  for (const CalendarComponent& block : component.inner) {
    const auto offset = OffsetOf(ValueOf(block, "TZOFFSETTO"));
    if (block.name == "STANDARD") zone.standard = offset;
    if (block.name == "DAYLIGHT") zone.daylight = offset;
  }
  return zone;
}

// Puts the components together, from the inside out.
class Reader {
 public:
  explicit Reader(std::string_view text) : lines(text) {}

  CalendarFile Read() {
    for (;;) {
      const auto result = lines.Next();
      if (result == ContentLineReader::Result::kEnd) break;
      if (result == ContentLineReader::Result::kDamaged) {
        file.errors.Add(lines.Number(), lines.Problem());
      } else {
        Take(lines.Line());
      }
    }
    for (const CalendarComponent& open : stack) {
      file.errors.Add(open.line, "\"" + open.name + "\" doesn't end, and is left out");
    }
    return std::move(file);
  }

 private:
  // A file that isn't in UTF-8 is in the organiser's code page.
  void Take(ContentLine line) {
    if (!IsUtf8(line.value)) line.value = CodePageToUtf8(line.value);
    if (EqualIgnoringCase(line.name, "BEGIN")) return Begin(InCapitals(line.value));
    if (EqualIgnoringCase(line.name, "END")) return End(InCapitals(line.value));
    if (passedOver == 0 && !stack.empty()) stack.back().lines.push_back(std::move(line));
  }

  // The calendar itself is no component here: what stands in it is taken as it comes.
  void Begin(const std::string& name) {
    if (name == "VCALENDAR") return;
    if (passedOver > 0 || stack.size() == kDeepest) {
      ++passedOver;
      return;
    }
    stack.push_back({name, lines.Number(), {}, {}});
  }

  void End(const std::string& name) {
    if (name == "VCALENDAR") return;
    if (passedOver > 0) {
      --passedOver;
      return;
    }
    if (stack.empty() || stack.back().name != name) {
      file.errors.Add(lines.Number(), "the end of \"" + name + "\" stands alone");
      return;
    }
    CalendarComponent done = std::move(stack.back());
    stack.pop_back();
    if (!stack.empty()) {
      stack.back().inner.push_back(std::move(done));
    } else {
      Finish(done);
    }
  }

  void Finish(const CalendarComponent& done) {
    if (done.name == "VTODO") file.todos.push_back(TodoOf(done));
    if (done.name == "VTIMEZONE") file.zones.push_back(ZoneOf(done));
    if (done.name != "VEVENT") return;
    if (auto event = EventOf(done)) {
      file.events.push_back(std::move(*event));
    } else {
      file.errors.Add(done.line, "the event has no start, and is left out");
    }
  }

  ContentLineReader lines;
  std::vector<CalendarComponent> stack;
  std::size_t passedOver = 0;  // components that are open below those of the stack
  CalendarFile file;
};

}  // namespace

CalendarFile ReadCalendarFile(std::string_view text) {
  return Reader(text).Read();
}

std::optional<std::int32_t> ReadDuration(std::string_view value) {
  static const std::map<char, std::int64_t> kUnits = {
      {'W', 604'800}, {'D', 86'400}, {'H', 3'600}, {'M', 60}, {'S', 1}};
  const bool isNegative = !value.empty() && value[0] == '-';
  if (!value.empty() && (value[0] == '-' || value[0] == '+')) value.remove_prefix(1);
  if (value.size() < 3 || value[0] != 'P') return std::nullopt;
  std::int64_t seconds = 0;
  std::int64_t number = -1;  // none yet
  for (const char c : value.substr(1)) {
    if (c >= '0' && c <= '9') {
      number = std::max<std::int64_t>(number, 0) * 10 + (c - '0');
      if (number > kMostSeconds) return std::nullopt;
    } else if (c != 'T') {
      const auto unit = kUnits.find(c);
      if (unit == kUnits.end() || number < 0) return std::nullopt;
      seconds += number * unit->second;
      if (seconds > kMostSeconds) return std::nullopt;
      number = -1;
    }
  }
  if (number >= 0) return std::nullopt;
  return static_cast<std::int32_t>(isNegative ? -seconds : seconds);
}

}  // namespace pw
