#include "host/formats/calendar_reader.h"

#include <algorithm>
#include <map>
#include <utility>

#include "base/codepage.h"
#include "base/text.h"
#include "host/formats/content_line.h"
#include "host/formats/icalendar.h"
#include "host/formats/stamp_text.h"
#include "host/formats/text_value.h"
#include "host/formats/transfer_encoding.h"

namespace pw {
namespace {

constexpr std::size_t kDeepest = 4;
constexpr std::int64_t kMostSeconds = INT32_MAX;

// What stands between BEGIN and END: the lines of its own, and of what is within it.
struct Component {
  std::string name;
  std::size_t line = 0;
  std::vector<ContentLine> lines;
  std::vector<Component> inner;
};

std::string Upper(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
  return text;
}

const ContentLine* Find(const Component& component, std::string_view name) {
  const auto found =
      std::find_if(component.lines.begin(), component.lines.end(),
                   [&](const ContentLine& line) { return EqualIgnoringCase(line.name, name); });
  return found == component.lines.end() ? nullptr : &*found;
}

std::string ValueOf(const Component& component, std::string_view name) {
  const ContentLine* line = Find(component, name);
  return line == nullptr ? std::string() : line->value;
}

// A text in UTF-8 with the organiser's line breaks; that of our own property where it has one.
std::string TextOf(const Component& component, std::string_view name) {
  if (const ContentLine* exact = Find(component, std::string(kOwnPrefix) + std::string(name))) {
    if (auto bytes = DecodeBase64(exact->value)) return *bytes;
  }
  return WithLineBreaks(UnescapeText(ValueOf(component, name)));
}

CalendarTime TimeOf(const ContentLine& line, std::string_view value) {
  const ContentParameter* zone = line.Find("TZID");
  CalendarTime time{std::string(value), {}};
  if (zone != nullptr && !zone->values.empty()) time.zone = zone->values.front();
  return time;
}

void TakeTimes(const Component& component, std::string_view name,
               std::vector<CalendarTime>& times) {
  for (const ContentLine& line : component.lines) {
    if (!EqualIgnoringCase(line.name, name)) continue;
    for (const std::string_view value : SplitValue(line.value, ',')) {
      // Of a period only its start.
      times.push_back(TimeOf(line, value.substr(0, value.find('/'))));
    }
  }
}

// "1998-03-02" of a date or a moment, or of a property of our own as it is.
std::string DateOf(const Component& component, std::string_view name) {
  const std::string exact = ValueOf(component, std::string(kOwnPrefix) + std::string(name));
  if (!exact.empty()) return UnescapeText(exact);
  const std::string digits = ValueOf(component, name);
  if (!HasForm(std::string_view(digits).substr(0, 8), "99999999")) return {};
  return digits.substr(0, 4) + "-" + digits.substr(4, 2) + "-" + digits.substr(6, 2);
}

TodoPriority PriorityOf(const std::string& value) {
  const std::int32_t number = ParseLong(value);
  if (number >= 1 && number <= 4) return TodoPriority::kHigh;
  return number >= 6 && number <= 9 ? TodoPriority::kLow : TodoPriority::kNormal;
}

ReadTodo TodoOf(const Component& component) {
  ReadTodo read;
  read.line = component.line;
  Todo& todo = read.todo;
  todo.uid = ValueOf(component, "UID");
  todo.subject = TextOf(component, "SUMMARY");
  todo.note = TextOf(component, "DESCRIPTION");
  todo.start = DateOf(component, "DTSTART");
  todo.due = DateOf(component, "DUE");
  todo.priority = PriorityOf(ValueOf(component, "PRIORITY"));
  todo.completed = EqualIgnoringCase(ValueOf(component, "STATUS"), "COMPLETED") ||
                   Find(component, "COMPLETED") != nullptr;
  todo.call = Find(component, std::string(kOwnPrefix) + "CALL") != nullptr;
  return read;
}

std::optional<EventAccess> AccessOf(const std::string& value) {
  if (value.empty()) return std::nullopt;
  if (EqualIgnoringCase(value, "PRIVATE")) return EventAccess::kPersonal;
  return EqualIgnoringCase(value, "CONFIDENTIAL") ? EventAccess::kPrivate : EventAccess::kPublic;
}

// Minutes before the start; nothing where there is no alarm that goes by the start.
std::optional<std::int32_t> AlarmOf(const Component& event) {
  for (const Component& inner : event.inner) {
    const ContentLine* trigger = Find(inner, "TRIGGER");
    if (inner.name != "VALARM" || trigger == nullptr) continue;
    const ContentParameter* related = trigger->Find("RELATED");
    const bool isOfEnd = related != nullptr && !related->values.empty() &&
                         EqualIgnoringCase(related->values.front(), "END");
    const auto seconds = ReadDuration(trigger->value);
    if (seconds && !isOfEnd) return -*seconds / 60;
  }
  return std::nullopt;
}

std::optional<CalendarTime> OneTime(const Component& component, std::string_view name) {
  const ContentLine* line = Find(component, name);
  if (line == nullptr) return std::nullopt;
  return TimeOf(*line, line->value);
}

// Nothing without a start.
std::optional<ReadEvent> EventOf(const Component& component) {
  const auto start = OneTime(component, "DTSTART");
  if (!start) return std::nullopt;
  ReadEvent read;
  read.line = component.line;
  Event& event = read.event;
  event.uid = ValueOf(component, "UID");
  event.subject = TextOf(component, "SUMMARY");
  event.notes = TextOf(component, "DESCRIPTION");
  event.location = TextOf(component, "LOCATION");
  event.start = *start;
  event.end = OneTime(component, "DTEND");
  if (!event.end) read.duration = ReadDuration(ValueOf(component, "DURATION"));
  event.alarmLead = AlarmOf(component);
  event.access = AccessOf(ValueOf(component, "CLASS"));
  event.rule = ValueOf(component, "RRULE");
  event.replaced = OneTime(component, "RECURRENCE-ID");
  TakeTimes(component, "RDATE", event.dates);
  TakeTimes(component, "EXDATE", event.deleted);
  return read;
}

// Minutes of "+0130" or "-053000".
std::optional<std::int32_t> OffsetOf(std::string_view value) {
  if (value.size() < 5 || (value[0] != '+' && value[0] != '-')) return std::nullopt;
  if (!HasForm(value.substr(1, 4), "9999")) return std::nullopt;
  const std::int32_t minutes = ParseLong(value.substr(1, 2)) * 60 + ParseLong(value.substr(3, 2));
  return value[0] == '-' ? -minutes : minutes;
}

ReadZone ZoneOf(const Component& component) {
  ReadZone zone;
  zone.name = ValueOf(component, "TZID");
  for (const Component& block : component.inner) {
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
    for (const Component& open : stack) {
      file.errors.Add(open.line, "\"" + open.name + "\" doesn't end, and is left out");
    }
    return std::move(file);
  }

 private:
  void Take(const ContentLine& line) {
    if (EqualIgnoringCase(line.name, "BEGIN")) return Begin(Upper(line.value));
    if (EqualIgnoringCase(line.name, "END")) return End(Upper(line.value));
    if (passedOver == 0 && !stack.empty()) stack.back().lines.push_back(line);
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
    Component done = std::move(stack.back());
    stack.pop_back();
    if (!stack.empty()) {
      stack.back().inner.push_back(std::move(done));
    } else {
      Finish(done);
    }
  }

  void Finish(const Component& done) {
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
  std::vector<Component> stack;
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
