#include "host/formats/calendar_component.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "base/text.h"

namespace pw {
namespace {

enum class Use { kOnce, kEach, kSilent };

// What becomes of a property; of one with a value here that holds for the value alone.
struct KnownProperty {
  const char* name;
  const char* value;
  Use use;
};

constexpr KnownProperty kOfBoth[] = {
    {"SUMMARY", "", Use::kOnce},       {"DESCRIPTION", "", Use::kOnce},
    {"DTSTART", "", Use::kOnce},       {"UID", "", Use::kSilent},
    {"DTSTAMP", "", Use::kSilent},     {"CREATED", "", Use::kSilent},
    {"SEQUENCE", "", Use::kSilent},    {"LAST-MODIFIED", "", Use::kSilent},
    {"CLASS", "PUBLIC", Use::kSilent}, {"STATUS", "CANCELLED", Use::kSilent},
};

constexpr KnownProperty kOfEvents[] = {
    {"LOCATION", "", Use::kOnce},
    {"DTEND", "", Use::kOnce},
    {"DURATION", "", Use::kOnce},
    {"CLASS", "", Use::kOnce},
    {"RRULE", "", Use::kOnce},
    {"RECURRENCE-ID", "", Use::kOnce},
    {"RDATE", "", Use::kEach},
    {"EXDATE", "", Use::kEach},
    {"STATUS", "CONFIRMED", Use::kSilent},
    {"TRANSP", "OPAQUE", Use::kSilent},
    {"PRIORITY", "0", Use::kSilent},
};

constexpr KnownProperty kOfTodos[] = {
    {"DUE", "", Use::kOnce},
    {"PRIORITY", "", Use::kOnce},
    {"COMPLETED", "", Use::kOnce},
    {"STATUS", "COMPLETED", Use::kSilent},
    {"STATUS", "NEEDS-ACTION", Use::kSilent},
    {"PERCENT-COMPLETE", "0", Use::kSilent},
    {"PERCENT-COMPLETE", "100", Use::kSilent},
    {"CATEGORIES", "Call", Use::kSilent},
};

template <std::size_t kCount>
const KnownProperty* FindIn(const KnownProperty (&table)[kCount], const ContentLine& line) {
  const auto* found =
      std::find_if(std::begin(table), std::end(table), [&](const KnownProperty& known) {
        return EqualIgnoringCase(line.name, known.name) &&
               (*known.value == '\0' || EqualIgnoringCase(line.value, known.value));
      });
  return found == std::end(table) ? nullptr : found;
}

// Nothing for one that no record has a place for.
const KnownProperty* KnownOf(const CalendarComponent& component, const ContentLine& line) {
  if (const KnownProperty* known = FindIn(kOfBoth, line)) return known;
  return component.name == "VEVENT" ? FindIn(kOfEvents, line) : FindIn(kOfTodos, line);
}

}  // namespace

const ContentLine* FindLine(const CalendarComponent& component, std::string_view name) {
  const auto found =
      std::find_if(component.lines.begin(), component.lines.end(),
                   [&](const ContentLine& line) { return EqualIgnoringCase(line.name, name); });
  return found == component.lines.end() ? nullptr : &*found;
}

std::string ValueOf(const CalendarComponent& component, std::string_view name) {
  const ContentLine* line = FindLine(component, name);
  return line == nullptr ? std::string() : line->value;
}

std::string InCapitals(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
  return text;
}

std::string LeftOutOf(const CalendarComponent& component) {
  constexpr std::size_t kMostNamed = 12;
  std::set<std::string> names;
  std::set<const KnownProperty*> seen;
  for (const ContentLine& line : component.lines) {
    const std::string name = InCapitals(line.name);
    if (line.value.empty() || name.rfind("X-", 0) == 0) continue;
    const KnownProperty* known = KnownOf(component, line);
    if (known == nullptr) {
      names.insert(name);
    } else if (known->use == Use::kOnce && !seen.insert(known).second) {
      names.insert("a second " + name);
    }
  }
  if (names.empty()) return "";
  std::string text;
  std::size_t count = 0;
  for (const std::string& name : names) {
    if (++count <= kMostNamed) text += (text.empty() ? "" : ", ") + name;
  }
  if (count > kMostNamed) text += " and " + std::to_string(count - kMostNamed) + " more";
  return text + (count == 1 ? " is left out" : " are left out");
}

}  // namespace pw
