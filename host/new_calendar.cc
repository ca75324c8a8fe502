#include "host/new_calendar.h"

#include <memory>

#include "framework/event_record.h"
#include "host/calendar_stems.h"
#include "host/record_reader.h"
#include "platform/platform.h"

namespace pw {
namespace {

// Any that a calendar can hold.
PWRecord PassingEvent() {
  PWRecord record;
  PWEventRecord event(&record);
  event.StartDate(PWDateTimeStamp(1998, 1, 1, 12, 0, 0));
  event.EndDate(PWDateTimeStamp(1998, 1, 1, 13, 0, 0));
  return record;
}

}  // namespace

std::vector<std::string> CalendarFilesAt(EngineRun& run, const std::string& location) {
  std::vector<std::string> files;
  for (const std::string_view name :
       {kEventFile, kDataFile, kRecurringFile, kTaskFile, kCallFile}) {
    const std::string path = location + std::string(name);
    if (CurrentPlatform().files->Exists(path)) files.push_back(run.NativePathOf(path));
  }
  return files;
}

Outcome<Done> MakeCalendar(EngineRun& run, const std::string& location) {
  PWSourceCategory category;
  category.Location = location.c_str();
  const std::unique_ptr<PWSource> source(run.Manager().CreateSource(kCalendarType));
  source->Category = &category;
  const std::string file = run.NativePathOf(location + std::string(kEventFile));
  if (source->Open(0) != kResultOk) {
    return TakeLoggedFailure(run).value_or(
        Failure{file + ": could not be made; a calendar needs the cities of the organiser "
                       "(`pairwise cities`)"});
  }
  PWRecord record = PassingEvent();
  const bool isMade = source->AddRecord(record) == kResultOk && source->RecordCount() == 1 &&
                      source->DeleteRecord() == kResultOk;
  const bool isSaved = source->CloseSource() == kResultOk;
  if (!isMade || !isSaved || CalendarFilesAt(run, location).empty()) {
    return Failure{file + ": could not be made"};
  }
  return Done{};
}

}  // namespace pw
