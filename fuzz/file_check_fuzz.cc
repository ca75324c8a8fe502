#include <cstddef>
#include <cstdint>
#include <string_view>

#include "host/check/binder_check.h"
#include "host/check/calendar_check.h"
#include "host/check/card_check.h"
#include "host/check/clock_check.h"
#include "host/check/todo_check.h"

// Looks for damage in anything, as each kind of the organiser's files. It finds no more than the
// file has bytes, but for its end, and says something of each.
namespace {

void RequireSense(const pw::FileCheck& check, std::string_view bytes) {
  if (check.findings.size() > bytes.size() + 1) __builtin_trap();
  for (const pw::Finding& finding : check.findings) {
    if (finding.text.empty()) __builtin_trap();
  }
}

void CheckTogether(std::string_view first, std::string_view second) {
  pw::FileCheck events;
  pw::CheckOccurrences(first, second, events);
  pw::FileCheck binder;
  pw::CheckBinder({first, second, first.size()}, binder);
  pw::DoNotesShareTexts(first, second.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  for (const auto check : {pw::CheckCardfile, pw::CheckEvents, pw::CheckSeries, pw::CheckTemplate,
                           pw::CheckSectionFile, pw::CheckNoteHeaders, pw::CheckNoteContents,
                           pw::CheckClocks, pw::CheckCities, pw::CheckZoneTable, pw::CheckPlaces}) {
    RequireSense(check(bytes), bytes);
  }
  RequireSense(pw::CheckDataFile(bytes, true), bytes);
  RequireSense(pw::CheckTasks(bytes), bytes);
  RequireSense(pw::CheckCalls(bytes), bytes);
  CheckTogether(bytes.substr(0, size / 2), bytes.substr(size / 2));
  return 0;
}
