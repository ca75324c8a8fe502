#include "host/import/importer.h"

#include <initializer_list>
#include <optional>
#include <utility>

#include "base/codepage.h"
#include "host/catalogue.h"
#include "host/import/all_day_alarm.h"
#include "host/import/comparison.h"
#include "host/import/damage.h"
#include "host/import/record_limits.h"
#include "host/import/series_keys.h"
#include "host/import/told_record.h"

namespace pw {
namespace {

constexpr std::size_t kRecordsPerProgress = 250;
constexpr const char* kRefusedByPlugIn = "refused by the organiser's plug-in";

std::string Refusal(const std::string& why) {
  return why.empty() ? std::string() : "refused, as " + why;
}

// The first that isn't empty.
std::string FirstOf(std::initializer_list<std::string> reasons) {
  for (const std::string& reason : reasons) {
    if (!reason.empty()) return reason;
  }
  return {};
}

}  // namespace

Importer::Importer(EngineRun& run, const Console& console, std::string typeName, bool update)
    : run(run),
      console(console),
      type(std::move(typeName)),
      update(update),
      form(*FindRecordForm(type)) {}

Outcome<Done> Importer::Into(const PWSourceCategory& category,
                             std::vector<IncomingRecord>& records) {
  const std::string location = category.Location.Str();
  auto opened = OpenForReading(run, type, category);
  if (!opened) return opened.Why();
  auto damage = WhyDamaged(run, type, category);
  if (!opened->problems.empty()) damage = NothingWritten(opened->problems.front());
  if (damage) {
    // Without a change it saves nothing, but the organiser gets its files back.
    opened->source->CloseSource();
    return *damage;
  }
  PWSource& source = *opened->source;
  if (type == kContactType) fieldNames = FieldNames(run, type, category);
  StoredRecords stored = HasCategories(type) ? StoredRecords(source, CodePageToUtf8(location))
                                             : StoredRecords::OfClocks(source);
  std::optional<SeriesKeys> keys;
  if (type == kCalendarType) keys.emplace(source, records, run.Objects().clock);
  arrived.clear();
  for (std::size_t i = 0; i < records.size(); ++i) {
    Bring(source, stored, records[i]);
    ShowProgress(i + 1, records.size());
  }
  const std::uint32_t expected = source.RecordCount();
  if (source.CloseSource() != kResultOk) {
    return Failure{run.NativePathOf(location) + ": could not be saved"};
  }
  return Compare(category, expected);
}

void Importer::Bring(PWSource& source, StoredRecords& stored, IncomingRecord& incoming) {
  const StoredRecords::Found found = update ? stored.Find(incoming) : StoredRecords::Found();
  std::string why;
  if (found.match == StoredRecords::Match::kRefused) {
    why = Refusal(found.text);
  } else if (found.match == StoredRecords::Match::kStored) {
    why = Update(source, found.text, incoming);
  } else {
    why = Add(source, incoming);
  }
  TellLog(incoming);
  if (!why.empty()) {
    ++counts.refused;
    return Tell(incoming, why);
  }
  const bool isUpdate = found.match == StoredRecords::Match::kStored;
  ++(isUpdate ? counts.updated : counts.added);
  for (const std::string& remark : incoming.remarks) Tell(incoming, remark);
  const std::string id = source.RecordID().Str();
  if (id != found.text) stored.GiveOut(id);
  arrived.push_back({&incoming, given, id, isUpdate});
}

// A source may answer 0 although it has no form for the record.
std::string Importer::Add(PWSource& source, IncomingRecord& incoming) {
  given = incoming.record;
  std::string why =
      FirstOf({incoming.lacks, WhyEmpty(given, type), WhyWithoutLength(given, type),
               WhyTooLong(given, type), type == kContactType ? WhyFull(source) : std::string()});
  if (!why.empty()) return Refusal(why);
  if (type == kCalendarType) PassAlarmOfOneDay(incoming.record);
  const std::uint32_t before = source.RecordCount();
  const bool isAdded = source.AddRecord(incoming.record) == kResultOk;
  return isAdded && source.RecordCount() > before ? "" : kRefusedByPlugIn;
}

// Of an id a source may only look at a part.
std::string Importer::Update(PWSource& source, const std::string& id, IncomingRecord& incoming) {
  const bool isFound = source.FindRecord(id.c_str()) == kResultOk && source.RecordID().View() == id;
  if (!isFound) return Refusal("the record with its id can't be found any more");
  PWRecord before;
  if (source.ReadRecord(&before) != kResultOk) {
    return Refusal("the engine has no words for the record with its id");
  }
  if (type == kContactType) {
    given = incoming.record;
    const std::string tooLong = WhyTooLongThen(source, fieldNames, given);
    return tooLong.empty() ? Replace(source, incoming.record, before) : Refusal(tooLong);
  }
  given = incoming.record;
  if (!incoming.told.is_null()) {
    auto merged = WithTold(before, incoming.told, form);
    if (!merged) return Refusal(merged.Why().message);
    given = *merged;
  }
  const std::string why = FirstOf({WhyWithoutLength(given, type), WhyTooLong(given, type)});
  if (!why.empty()) return Refusal(why);
  PWRecord record = given;
  return Replace(source, record, before);
}

// What no longer goes where it was the module deletes first, and then may have no place for it.
std::string Importer::Replace(PWSource& source, PWRecord& record, PWRecord& before) {
  if (type == kCalendarType) PassAlarmOfOneDay(record);
  const std::uint32_t count = source.RecordCount();
  const bool isDone = source.UpdateRecord(record) == kResultOk;
  if (isDone && source.RecordCount() == count) return {};
  if (source.RecordCount() == count) return kRefusedByPlugIn;
  source.AddRecord(before);
  return source.RecordCount() == count
             ? kRefusedByPlugIn
             : std::string(kRefusedByPlugIn) + ", and the record that was there is gone";
}

// As they stand in the file now.
Outcome<Done> Importer::Compare(const PWSourceCategory& category, std::uint32_t expected) {
  const auto opened = OpenForReading(run, type, category);
  if (!opened) return Failure{opened.Why().message + "; what was saved can't be looked at"};
  // To-do items and events may have other ids in the file, made of what it keeps of them.
  const bool mayHaveOtherIds = type == kTodoType || type == kCalendarType;
  const bool areAllThere = mayHaveOtherIds && opened->source->RecordCount() >= expected;
  for (const Arrived& each : arrived) CompareOne(*opened->source, each, areAllThere);
  opened->source->CloseSource();
  return Done{};
}

void Importer::CompareOne(PWSource& source, const Arrived& each, bool areAllThere) {
  const bool isFound =
      source.FindRecord(each.id.c_str()) == kResultOk && source.RecordID().View() == each.id;
  PWRecord kept;
  const bool isRead = isFound && source.ReadRecord(&kept) == kResultOk;
  if (!isRead && !areAllThere) {
    ++counts.missing;
    return Tell(*each.incoming, "isn't in the file after the save");
  }
  std::vector<std::string> changes;
  PWRecord wanted = each.given;
  const JsonInput told = each.isUpdate ? each.incoming->told : JsonInput();
  if (isRead) changes = ChangesOf(wanted, kept, form, told);
  for (const std::string& change : changes) Tell(*each.incoming, change);
  if (!changes.empty() || !each.incoming->remarks.empty()) ++counts.changed;
}

void Importer::Tell(const IncomingRecord& incoming, const std::string& what) {
  console.Warn({LabelOf(incoming, form) + ": " + what});
}

void Importer::TellLog(const IncomingRecord& incoming) {
  for (const LogLine& line : run.Objects().log) Tell(incoming, CodePageToUtf8(line.text));
  run.Objects().log.clear();
}

void Importer::ShowProgress(std::size_t done, std::size_t all) const {
  if (all < kRecordsPerProgress) return;
  if (done % kRecordsPerProgress != 0 && done != all) return;
  console.ShowProgress(done, all);
}

}  // namespace pw
