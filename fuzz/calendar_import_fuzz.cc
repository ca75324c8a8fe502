#include <cstddef>
#include <cstdint>
#include <string_view>

#include "host/drive_records.h"
#include "host/import/calendar_records.h"
#include "host/import/typed_csv.h"
#include "host/import/typed_json.h"
#include "platform/testing/test_platform.h"
#include "tests/support/zone_files.h"

// Brings anything in as a calendar, a CSV file or a JSON file of events and to-do items. Each
// record that comes of it can be told.
namespace {

void Tell(const pw::Incoming& incoming, const char* type) {
  for (const pw::IncomingRecord& each : incoming.records) {
    PWRecord copy = each.record;
    pw::JsonLine(pw::FindRecordForm(type)->toJson(copy));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const pw::TestPlatform platform;
  const pw::CityClocks cities(pw::test::SomeCities(), "Sydney");
  const pw::CalendarFile file = pw::ReadCalendarFile(text);
  Tell(pw::EventsOfCalendar(file, cities), "calendar");
  Tell(pw::TodosOfCalendar(file), "todo");
  for (const char* type : {"calendar", "todo", "memo", "timezone"}) {
    Tell(pw::ReadTypedCsv(text, type, cities), type);
    Tell(pw::ReadTypedJson(text, *pw::FindRecordForm(type)), type);
  }
  return 0;
}
