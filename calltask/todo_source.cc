#include "calltask/todo_source.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "base/process_wide.h"
#include "base/text.h"
#include "calltask/call_store.h"
#include "calltask/task_store.h"
#include "framework/task_record.h"
#include "platform/platform.h"
#include "plugin/handshake.h"
#include "plugin/string_table.h"
#include "timeplace/zones.h"

using pw::calltask::FormatVersion;

namespace pw {

// What differs in how the two kinds are told of.
struct TodoKind {
  bool isCall;
  std::uint32_t noteShortened;  // numbers of texts
  std::uint32_t dayFull;
  std::uint32_t recurring;
};

}  // namespace pw

namespace {

constexpr std::uint32_t kSourceKind = 2;
constexpr std::size_t kLongestNote = 2048;

constexpr pw::TodoKind kTask = {false, strings::kTaskNoteShortened, strings::kTaskDayFull,
                                strings::kRecurringTask};
constexpr pw::TodoKind kCall = {true, strings::kCallNoteShortened, strings::kCallDayFull,
                                strings::kRecurringCall};

pw::ProcessWide<PWString> recordId;
pw::ProcessWide<PWDateTimeStamp> taskTimeStamp;
pw::ProcessWide<PWDateTimeStamp> callTimeStamp;

pw::calltask::Date DateOf(const PWDateTimeStamp& stamp) {
  return {stamp.year, stamp.month, stamp.day};
}

// The time of the day stays.
void SetDate(PWDateTimeStamp& stamp, const pw::calltask::Date& date) {
  stamp.year = static_cast<std::uint16_t>(date.year);
  stamp.month = static_cast<std::uint8_t>(date.month);
  stamp.day = static_cast<std::uint8_t>(date.day);
}

// Seconds hold the years 1970 to 2037. Others are brought into them, as the files bring all into
// fewer.
std::int32_t StartSeconds(PWDateTimeStamp stamp) {
  const std::int32_t year =
      std::clamp(std::int32_t{stamp.year}, kFirstYearOfSeconds, kLastYearOfSeconds);
  stamp.year = static_cast<std::uint16_t>(year);
  return LocalStampToSeconds(stamp);
}

void ReadDates(const pw::DayRecord& record, PWTaskRecord& todo) {
  todo.NoStartDate(record.start == 0);
  if (record.start != 0) {
    const WMBrokenTime local = SecondsToLocal(record.start);
    SetDate(todo.StartDate(), {local.year + 1900, local.mon + 1, local.mday});
  }
  const auto due = record.DueDate();
  todo.NoDueDate(!due);
  if (due) SetDate(todo.DueDate(), *due);
}

}  // namespace

WMTodoSource::WMTodoSource(PWSourceManager* manager) : PWSource(manager, kSourceKind) {}

WMTodoSource::~WMTodoSource() = default;

PWRESULT WMTodoSource::OpenSource() {
  cursor = 0;
  prefix = Category->Location.Str();
  pw::Files& files = *pw::CurrentPlatform().files;
  const std::string taskPath = WMTaskStore::PathOf(prefix);
  if (!files.Exists(taskPath)) WMTaskStore::CreateTaskStore(prefix);
  if (!files.Exists(WMCallStore::PathOf(prefix))) WMCallStore::CreateCallStore(prefix);
  if (!AskOrganiser(*Manager, taskPath, kTodoFiles)) return kResultFailed;
  ZoneFilesMayHaveChanged();

  tasks = std::make_unique<WMTaskStore>();
  calls = std::make_unique<WMCallStore>();
  const std::int32_t tasksLoaded = tasks->Load(prefix);
  const std::int32_t callsLoaded = calls->Load(prefix);
  if (tasksLoaded == 0 || callsLoaded == 0) return kResultOk;
  tasks.reset();
  calls.reset();
  NotifyOrganiserEnd(false, 0, false);
  return kResultFailed;
}

PWRESULT WMTodoSource::CloseSource() {
  if (IsOpen()) {
    tasks->Save(prefix);
    calls->Save(prefix);
  }
  tasks.reset();
  calls.reset();
  NotifyOrganiserEnd(true, 0, false);
  return kResultOk;
}

PWRESULT WMTodoSource::AddRecord(PWRecord& record) {
  if (!IsOpen()) return kResultFailed;
  const PWTaskRecord todo(&record);
  const bool isCall = todo.Call();
  const std::int32_t result = isCall ? AddCall(todo) : AddTask(todo);
  if (result == pw::DayStore::kDayFull) {
    Warn((isCall ? kCall : kTask).dayFull, todo.Subject().Str());
  }
  if (result != 0) return kResultFailed;
  cursor = (isCall ? RecordCount() : TaskCount()) - 1;
  return kResultOk;
}

std::int32_t WMTodoSource::AddTask(const PWTaskRecord& todo) {
  auto task = std::make_unique<CTaskRecord>();
  Fill(*task, todo, kTask);
  return tasks->Add(std::move(task), false);
}

std::int32_t WMTodoSource::AddCall(const PWTaskRecord& todo) {
  auto call = std::make_unique<WMCallRec>();
  Fill(*call, todo, kCall);
  return calls->Add(std::move(call));
}

PWRESULT WMTodoSource::UpdateRecord(PWRecord& record) {
  const auto place = Current();
  if (!place) return kResultFailed;
  const PWTaskRecord todo(&record);
  place->store.Change(place->index, [&](pw::DayRecord& changed) {
    Fill(changed, todo, place->kind);
    changed.lastChange = UtcNowSeconds();
  });
  return kResultOk;
}

// Carries the engine's record over. A record without a start date starts now.
void WMTodoSource::Fill(pw::DayRecord& record, const PWTaskRecord& todo,
                        const pw::TodoKind& kind) const {
  std::string_view note = todo.Note().View();
  if (note.size() > kLongestNote) {
    note = note.substr(0, kLongestNote);
    Warn(kind.noteShortened, todo.Subject().Str());
  }
  record.SetTexts(todo.Subject().View(), note);
  record.SetCompleted(todo.Completed());
  record.SetStart(todo.NoStartDate() ? UtcNowSeconds() : StartSeconds(todo.StartDate()));
  if (todo.NoDueDate()) {
    record.ClearDueDate();
  } else {
    record.SetDueDate(DateOf(todo.DueDate()));
  }
  record.SetPriority(todo.Priority());
}

// Texts that don't name the organiser leave the second value alone.
void WMTodoSource::Warn(std::uint32_t number, const std::string& subject) const {
  if (Manager->Log == nullptr) return;
  const std::string name = Manager->Name().Str();
  Manager->Log->Addf(LoadString(number), kLogWarning, subject.c_str(), name.c_str());
}

PWRESULT WMTodoSource::DeleteRecord() {
  const auto place = Current();
  if (!place) return kResultFailed;
  place->store.Remove(place->index);
  return kResultOk;
}

PWRESULT WMTodoSource::ReadRecord(PWRecord* record) {
  const auto place = Current();
  if (!place) return kResultFailed;
  const pw::DayRecord& current = place->Record();
  if (current.IsRecurring()) {
    ReportRecurring(*place);
    return kResultFailed;
  }
  PWTaskRecord todo(record);
  todo.Call(place->kind.isCall);
  todo.Subject(current.subject.c_str());
  todo.Note(current.note.c_str());
  todo.Completed(current.IsCompleted());
  ReadDates(current, todo);
  todo.Priority(current.Priority());
  return kResultOk;
}

// Each subject once for each kind.
void WMTodoSource::ReportRecurring(const Place& place) {
  const std::string subject(pw::UpToZero(place.Record().subject));
  auto& reported = place.kind.isCall ? reportedCalls : reportedTasks;
  if (reported.insert(subject).second) Warn(place.kind.recurring, subject);
}

std::uint32_t WMTodoSource::RecordCount() {
  return IsOpen() ? tasks->Count() + calls->Count() : 0;
}

PWString& WMTodoSource::RecordID() {
  const auto place = Current();
  *recordId = place ? place->store.IdText(place->index) : std::string();
  return *recordId;
}

PWDateTimeStamp& WMTodoSource::RecordTimeStamp() {
  const auto place = Current();
  if (!place || calls->Format() != FormatVersion::k50) return PWDateTimeStamp::CurrentTime();
  PWDateTimeStamp& stamp = place->kind.isCall ? *callTimeStamp : *taskTimeStamp;
  stamp = pw::CurrentPlatform().clock->Local(place->Record().lastChange);
  return stamp;
}

std::uint32_t WMTodoSource::RecordCRC() {
  const auto place = Current();
  if (!place || calls->Format() == FormatVersion::k50 || tasks->Format() == FormatVersion::k50) {
    return 0;
  }
  const pw::DayRecord& record = place->Record();
  std::uint32_t crc = GenerateCRC(0, PWString(record.subject.c_str()));
  crc = GenerateCRC(crc, PWString(record.note.c_str()));
  for (const std::uint32_t word : record.Words()) {
    crc = GenerateCRC(crc, PWString(pw::FormatLong(static_cast<std::int32_t>(word)).c_str()));
  }
  return crc;
}

PWRESULT WMTodoSource::FirstRecord() {
  cursor = 0;
  return RecordCount() > 0 ? kResultOk : kResultFailed;
}

PWRESULT WMTodoSource::NextRecord() {
  if (cursor >= RecordCount()) return kResultFailed;
  ++cursor;
  return cursor < RecordCount() ? kResultOk : kResultFailed;
}

PWRESULT WMTodoSource::FindRecord(const char* id) {
  cursor = 0;
  if (!IsOpen()) return kResultFailed;
  const std::string wanted = pw::TextOf(id);
  if (const auto task = tasks->Find(wanted)) {
    cursor = *task;
    return kResultOk;
  }
  if (const auto call = calls->Find(wanted)) {
    cursor = TaskCount() + *call;
    return kResultOk;
  }
  return kResultFailed;
}

std::uint32_t WMTodoSource::TaskCount() const {
  return tasks->Count();
}

std::optional<WMTodoSource::Place> WMTodoSource::Current() const {
  if (!IsOpen()) return std::nullopt;
  const std::uint32_t taskCount = TaskCount();
  if (cursor < taskCount) return Place{kTask, *tasks, cursor};
  if (cursor - taskCount < calls->Count()) return Place{kCall, *calls, cursor - taskCount};
  return std::nullopt;
}

const pw::DayRecord& WMTodoSource::Place::Record() const {
  return store.Record(index);
}
