#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "framework/source.h"
#include "host/city_clocks.h"
#include "host/engine_run.h"
#include "host/formats/contact.h"
#include "host/outcome.h"
#include "host/todo_files.h"

namespace pw {

inline constexpr const char* kContactType = "contact";
inline constexpr const char* kTodoType = "todo";
inline constexpr const char* kCalendarType = "calendar";
inline constexpr const char* kMemoType = "memo";

// A source with its category, for reading. A run that reads never closes it; one that writes has
// to, for the organiser to hear that its files are free again.
struct OpenedSource {
  std::unique_ptr<PWSourceCategory> category;  // must outlive the source
  std::unique_ptr<PWSource> source;
  TodoFiles todoFiles;                // of to-do items
  CityClocks cities;                  // of events
  std::vector<std::string> problems;  // what of the files can't be read, a line each
  std::vector<std::string> warnings;  // what else a person should know of them
};
Outcome<OpenedSource> OpenForReading(EngineRun& run, const std::string& type,
                                     const PWSourceCategory& category);

// Why a source wasn't opened, as the module has said last; it is taken off the log. Nothing where
// the module said nothing of a failure.
std::optional<Failure> TakeLoggedFailure(EngineRun& run);

// The names of a category's columns, in their order; a name may stand for several. Those of a
// cardfile are its own, those of other types the same for all.
std::vector<std::string> FieldNames(EngineRun& run, const std::string& type,
                                    const PWSourceCategory& category);

struct ReadResult {
  Contact shown;
  PWDateTimeStamp stamp;  // last change in the machine's zone; all zero if it isn't known
  PWRecord record;        // as the engine has it; empty for a contact
};

// The current record, its columns under those names; nothing if it can't be read. A card is read by
// column, as a record of the engine has room for one field of a name only.
std::optional<ReadResult> ReadRecord(const OpenedSource& opened, const std::string& type,
                                     const std::vector<std::string>& names);

// A record as the engine has it.
struct TypedRecord {
  std::string id;
  PWDateTimeStamp stamp;  // as in `ReadResult`
  PWRecord record;
};

struct CategoryRecords {
  std::string name;                     // the category's
  std::string location;                 // the organiser's path, in UTF-8
  std::vector<std::string> fieldNames;  // in the order of its columns
  std::vector<Contact> contacts;
  std::vector<TypedRecord> records;   // the same again; none for contacts
  std::size_t unreadable = 0;         // records that were left out
  std::vector<std::string> problems;  // what of the files can't be read, a line each
  std::vector<std::string> warnings;  // what else a person should know of them
};
Outcome<CategoryRecords> ReadRecords(EngineRun& run, const std::string& type,
                                     const PWSourceCategory& category);

}  // namespace pw
