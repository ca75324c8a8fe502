#include "host/record_reader.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

#include "base/codepage.h"
#include "base/cursor.h"
#include "cardfile/format.h"
#include "framework/task_record.h"
#include "host/binder_files.h"
#include "host/calendar_files.h"
#include "host/calendar_stems.h"
#include "host/catalogue.h"
#include "host/check/card_check.h"
#include "host/closed_files.h"
#include "host/json_fields.h"
#include "host/organiser_folder.h"
#include "host/record_views.h"
#include "memo/format.h"
#include "memo/location.h"
#include "platform/platform.h"
#include "platform/whole_file.h"

namespace pw {
namespace {

constexpr const char* kContactLog = "Contact Log";

// The field names that stand in the cardfile itself, and the contact log behind them. The module
// names each but once, which doesn't tell the columns of two fields of one name apart. Empty where
// there are none.
std::vector<std::string> NamesInFile(const std::string& location) {
  const auto bytes = ReadWholeFile(location, cardfile::kLargestFile);
  if (!bytes) return {};
  ByteReader in(*bytes);
  cardfile::DecodeHeader(in);
  const std::uint32_t offset = cardfile::DecodeNamePointer(in).namesOffset;
  in.Seek(offset);
  const std::uint16_t length = in.U16();
  const std::string_view block = in.Take(length);
  if (in.Short()) return {};
  std::vector<std::string> names = cardfile::DecodeFieldNames(block);
  names.emplace_back(kContactLog);
  return names;
}

// Fills the columns by the fields of their places. False if the card can't be read.
bool ReadCard(PWSource& source, const std::vector<std::string>& names, Contact& card) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    PWField field;
    if (source.GetField(static_cast<std::int32_t>(i), field) != kResultOk) return false;
    card.fields.emplace_back(names[i], CodePageToUtf8(field.text.View()));
  }
  return true;
}

// Fills record and columns. False if it can't be read.
bool ReadTyped(const OpenedSource& opened, const RecordView& view, ReadResult& read) {
  if (opened.source->ReadRecord(&read.record) != kResultOk) return false;
  const std::vector<std::string> texts = view.texts(read.record, opened.cities);
  for (std::size_t i = 0; i < texts.size(); ++i) {
    read.shown.fields.emplace_back(view.columns[i], texts[i]);
  }
  return true;
}

// Where the files don't tell when a to-do item was changed the source tells the present; of an
// all-day event it may tell the first moment of 1970.
PWDateTimeStamp ChangeOf(const OpenedSource& opened, const std::string& type, PWRecord& record) {
  const PWDateTimeStamp unknown;
  if (!HasStamps(type)) return unknown;
  if (type == kTodoType) {
    const bool isCall = PWTaskRecord(&record).Call();
    const TodoFiles& files = opened.todoFiles;
    if (!(isCall ? files.callsTellChange : files.tasksTellChange)) return unknown;
  }
  const PWDateTimeStamp stamp = opened.source->RecordTimeStamp();
  PWDateTimeStamp never;
  never = CurrentPlatform().clock->Local(0);
  return type == kCalendarType && stamp == never ? unknown : stamp;
}

// The file that tells of a binder's notes, on this machine.
std::string HeaderFileOf(EngineRun& run, const std::string& location) {
  return run.NativePathOf(memo::Location(location).stem + memo::kHeaderFile);
}

// The module reads what it can of a cardfile, and says nothing of the rest.
std::vector<std::string> ProblemsOfCardfile(EngineRun& run, const std::string& location) {
  const auto bytes = ReadWholeFile(location, cardfile::kLargestFile);
  const std::string found = bytes ? FindingsInOneLine(CheckCardfile(*bytes)) : std::string();
  if (found.empty()) return {};
  return {run.NativePathOf(location) + ": damaged: " + found};
}

// What the module doesn't say of the files behind an open source.
void LookAtFiles(EngineRun& run, const std::string& type, OpenedSource& opened) {
  const std::string location = opened.category->Location.Str();
  if (type == kContactType) {
    opened.problems = ProblemsOfCardfile(run, location);
  } else if (type == kTodoType) {
    opened.todoFiles = LookAtTodoFiles(run, location);
    opened.problems = opened.todoFiles.problems;
  } else if (type == kCalendarType) {
    opened.cities = CityClocks::Of(run);
    opened.problems = ProblemsOfCalendar(run, location);
    if (opened.cities.Home() == nullptr && HasCalendar(location)) {
      opened.warnings = {
          "the home city isn't known, so that times are those of Greenwich, and "
          "dates may be a day off; `pairwise init --city` names one"};
    }
  } else if (type == kMemoType && LookAtBinder(location).isDamaged) {
    opened.problems = {HeaderFileOf(run, location) +
                       ": damaged, so that not all of the binder is read; see `pairwise check`"};
  }
}

// Why a calendar can't be opened.
Failure WhyClosed(EngineRun& run, const std::string& location) {
  const std::string eventFile = run.NativePathOf(location + std::string(kEventFile));
  if (!HasCalendar(location)) return {eventFile + ": there is no calendar"};
  const std::string cityFile = OrganiserFolder(run) + "\\cityinfo.dat";
  if (!CurrentPlatform().files->Exists(cityFile)) {
    return {run.NativePathOf(cityFile) +
            ": not there, and without its cities no calendar can be opened; `pairwise cities "
            "--from-system` makes such a file"};
  }
  return {eventFile + ": cut short, or far too large; see `pairwise check`"};
}

// Why a section of a binder can't be opened.
Failure WhyNotOpened(EngineRun& run, const std::string& location, PWRESULT result) {
  const memo::Location where(location);
  const std::string file = run.NativePathOf(where.stem + memo::kSectionFile);
  if (result == kResultFileMissing) {
    return {file + ": it, or one of the two files beside it, is not there"};
  }
  return {file + ": damaged, as may be the files beside it, or without a section '" +
          CodePageToUtf8(where.section) + "'; see `pairwise check`"};
}

}  // namespace

std::optional<Failure> TakeLoggedFailure(EngineRun& run) {
  std::vector<LogLine>& log = run.Objects().log;
  if (log.empty() || log.back().image != kLogFailure) return std::nullopt;
  Failure failure{CodePageToUtf8(log.back().text)};
  log.pop_back();
  return failure;
}

Outcome<OpenedSource> OpenForReading(EngineRun& run, const std::string& type,
                                     const PWSourceCategory& category) {
  OpenedSource opened;
  opened.category = std::make_unique<PWSourceCategory>(category);
  opened.source.reset(run.Manager().CreateSource(type.c_str()));
  if (opened.source == nullptr) return Failure{"records of type '" + type + "' aren't offered"};
  opened.source->Category = opened.category.get();
  // Of one text that many notes have each record would have a copy.
  if (type == kMemoType && LookAtBinder(category.Location.Str()).sharesTexts) {
    return Failure{HeaderFileOf(run, category.Location.Str()) +
                   ": its notes share their texts, and aren't read; see `pairwise check`"};
  }
  const PWRESULT result = opened.source->Open(0);
  if (result == kResultOk) {
    LookAtFiles(run, type, opened);
    return opened;
  }
  if (auto said = TakeLoggedFailure(run)) return *said;
  if (run.Mode() == RunMode::kWriting) {
    const auto closed = ClosedFiles(run, type, category.Location.Str(), FileChange::kSaved);
    if (!closed.empty()) return Failure{closed.front()};
  }
  if (!HasCategories(type)) {
    return Failure{run.NativePathOf(OrganiserFolder(run)) +
                   ": CLOCKS.DAT is missing or cut, or names a city that cityinfo.dat lacks"};
  }
  if (type == kCalendarType) return WhyClosed(run, category.Location.Str());
  if (type == kTodoType) {
    return Failure{run.NativePathOf(category.Location.Str() + "TASK.WMW") +
                   ": neither this file nor the calls beside it can be read"};
  }
  if (type == kMemoType) return WhyNotOpened(run, category.Location.Str(), result);
  const std::string file = run.NativePathOf(category.Location.Str());
  return Failure{file +
                 (result == kResultFileMissing ? ": not there" : ": damaged, or unreadable")};
}

std::vector<std::string> FieldNames(EngineRun& run, const std::string& type,
                                    const PWSourceCategory& category) {
  if (const RecordView* view = FindRecordView(type)) return view->columns;
  PWStringVector names;
  run.Manager().CategoryFieldNames(kContactType, category.Location, names);
  std::vector<std::string> known;
  for (std::uint32_t i = 0; i < names.Count(); ++i) known.push_back(names.At(i)->Str());
  std::vector<std::string> all = NamesInFile(category.Location.Str());
  if (all.empty()) all = known;
  // Not every edition takes part in the contact log.
  if (known.empty() || known.back() != kContactLog) {
    if (!all.empty() && all.back() == kContactLog) all.pop_back();
  }
  for (std::string& name : all) name = CodePageToUtf8(name);
  return all;
}

std::optional<ReadResult> ReadRecord(const OpenedSource& opened, const std::string& type,
                                     const std::vector<std::string>& names) {
  PWSource& source = *opened.source;
  ReadResult read;
  read.shown.id = CodePageToUtf8(source.RecordID().View());
  const RecordView* view = FindRecordView(type);
  const bool isRead =
      view == nullptr ? ReadCard(source, names, read.shown) : ReadTyped(opened, *view, read);
  if (!isRead) return std::nullopt;
  read.stamp = ChangeOf(opened, type, read.record);
  if (!(read.stamp == PWDateTimeStamp())) read.shown.stamp = StampText(read.stamp);
  return read;
}

Outcome<CategoryRecords> ReadRecords(EngineRun& run, const std::string& type,
                                     const PWSourceCategory& category) {
  auto opened = OpenForReading(run, type, category);
  if (!opened) return opened.Why();
  CategoryRecords read;
  read.name = CodePageToUtf8(category.Name.View());
  read.location = CodePageToUtf8(category.Location.View());
  read.fieldNames = FieldNames(run, type, category);
  read.problems = opened->problems;
  read.warnings = opened->warnings;
  PWSource& source = *opened->source;
  for (PWRESULT at = source.FirstRecord(); at == kResultOk; at = source.NextRecord()) {
    auto record = ReadRecord(*opened, type, read.fieldNames);
    if (!record) {
      ++read.unreadable;
      continue;
    }
    if (type != kContactType) {
      read.records.push_back({record->shown.id, record->stamp, record->record});
    }
    read.contacts.push_back(std::move(record->shown));
  }
  return read;
}

}  // namespace pw
