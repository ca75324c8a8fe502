#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "framework/event_record.h"
#include "host/drive_records.h"
#include "host/import/calendar_records.h"
#include "host/import/typed_csv.h"
#include "host/import/typed_json.h"
#include "platform/testing/test_platform.h"
#include "tests/support/zone_files.h"

// Brings anything in as a calendar, a CSV file or a JSON file of events and to-do items. Each
// record that comes of it can be told, and a small file doesn't come to many large ones.
namespace {

void Tell(const pw::Incoming& incoming, const char* type) {
  for (const pw::IncomingRecord& each : incoming.records) {
    PWRecord copy = each.record;
    pw::JsonLine(pw::FindRecordForm(type)->toJson(copy));
  }
}

// What the dates of series come to, which share the file's texts.
constexpr std::size_t kMostTexts = pw::kMostBytesOfDates;

std::size_t TextsOf(const pw::Incoming& incoming) {
  std::size_t bytes = 0;
  for (const pw::IncomingRecord& each : incoming.records) {
    PWRecord copy = each.record;
    const PWEventRecord event(&copy);
    bytes += event.Subject().View().size() + event.Location().View().size() +
             event.Notes().View().size();
  }
  return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const pw::TestPlatform platform;
  const pw::CityClocks cities(pw::test::SomeCities(), "Sydney");
  const pw::CalendarFile file = pw::ReadCalendarFile(text);
  for (const bool update : {false, true}) {
    const pw::Incoming incoming = pw::EventsOfCalendar(file, cities, update);
    if (TextsOf(incoming) > kMostTexts + file.events.size() * size) std::abort();
    Tell(incoming, "calendar");
  }
  Tell(pw::TodosOfCalendar(file), "todo");
  for (const char* type : {"calendar", "todo", "memo", "timezone"}) {
    Tell(pw::ReadTypedCsv(text, type, cities), type);
    Tell(pw::ReadTypedJson(text, *pw::FindRecordForm(type)), type);
  }
  return 0;
}
