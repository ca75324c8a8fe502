#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "calendar/data_file.h"
#include "calendar/item_list.h"
#include "calendar/recurring_file.h"
#include "framework/object.h"
#include "timeplace/place_list.h"
#include "timeplace/year_frame.h"

// The calendar: three files and the list of places, wholly in memory between `Load` and `Save`. All
// is called on the engine's one thread.
//
// The engine knows the calendar's records by one number: those of the data file come first, then
// the items without a series, then the series. The occurrences of a series have no numbers.
class WMCalendarStore : public PWObject {
 public:
  // Makes the process's version the one that the registry asks for.
  WMCalendarStore();
  ~WMCalendarStore() override;
  WMCalendarStore(const WMCalendarStore&) = delete;
  WMCalendarStore& operator=(const WMCalendarStore&) = delete;

  // Reads the files whose names are appended to `folder`, which ends in its separator and a stem if
  // there is one; once for each object. 0, or -1 without the organiser's city file, for an event
  // file that is empty, larger than 256 MiB, or whose header, year table or day index is cut short,
  // which may be found when the other files have been made already. 0, and an empty
  // calendar, where the event file can't be opened: the others aren't read then, and a save
  // overwrites them. Days that can't be read are left out, and are gone with the next save.
  std::int32_t Load(const std::string& folder);

  // Rewrites all files, and makes those that are missing. Always 0: a file that can't be written
  // isn't told of, nor is an event file that would be too large to be opened again, with which all
  // stay as they are.
  std::int32_t Save();

  // Closes the files, and drops items and series. Always 0.
  std::int32_t Close();

  // Works the bounds out again, which every change of a list calls for.
  void RecountSections();

  // The number of all records, of which it makes sure first.
  std::uint32_t RecordCount();

  bool dirty = false;  // something was changed

  // Bounds of the numbers: records of the data file, items, series.
  std::uint32_t dataEnd = 0;
  std::uint32_t eventEnd = 0;
  std::uint32_t recordEnd = 0;
  std::uint32_t currentRecord = 0;

  std::int32_t zone = 0;  // of the home city when the files were loaded
  WMPlaceList places;
  WMDataFile data;
  ItemList plainItems;
  WMRecurringFile recurring;
  ItemList occurrenceItems;

 private:
  bool LoadFiles(std::string_view eventBytes);

  std::string eventPath;
  std::string dataPath;
  std::string recurringPath;
  pw::frame::Header header;
};

// Makes an empty event file and an empty data file, of the version in force, or if there is none
// yet of the one that the registry asks for. Whether the event file could be opened; the data file
// is made in any case.
bool CreateEventFiles(const std::string& folder);

// Deletes the three files, and makes the event file and the data file anew; the recurring file is
// made when it is next loaded. A step that fails ends it with false, and leaves those before it
// done: so a folder without an event file stays as it is.
bool ResetFiles(const std::string& folder);
