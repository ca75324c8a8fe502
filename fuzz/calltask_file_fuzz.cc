#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>

#include "calltask/frame_format.h"
#include "framework/source.h"
#include "framework/task_record.h"
#include "platform/testing/test_platform.h"
#include "plugin/source_manager.h"

// Reads anything as a call file and as a task file at once. What loads is found by its ids,
// changed, saved as whole files, and comes back from them.
namespace {

constexpr const char* kPaths[] = {"C:\\TASK.WMW", "C:\\CALL.WMW"};
constexpr std::uint32_t kLookedAt = 128;

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

class Todos {
 public:
  Todos() {
    manager.Config = &config;
    category.Location = "C:\\";
  }

  // Null if neither file loads.
  std::unique_ptr<PWSource> Open() {
    std::unique_ptr<PWSource> source(manager.CreateSource("todo"));
    source->Category = &category;
    if (source->Open(0) != kResultOk) return nullptr;
    return source;
  }

 private:
  PWConfig config;
  WMSourceManager manager{0};
  PWSourceCategory category;
};

// Writes each record that can be read back as it is. How many there are.
std::uint32_t UpdateAll(PWSource& source) {
  const std::uint32_t count = std::min(source.RecordCount(), kLookedAt);
  PWRESULT at = source.FirstRecord();
  for (std::uint32_t i = 0; i < count; ++i) {
    Require(at == kResultOk);
    source.RecordCRC();
    source.RecordTimeStamp();
    PWRecord record;
    if (source.ReadRecord(&record) == kResultOk) {
      Require(source.UpdateRecord(record) == kResultOk);
    }
    at = source.NextRecord();
  }
  return count;
}

// Finds and deletes every record looked at, and adds one of each kind.
void Change(PWSource& source, std::uint32_t count) {
  for (std::uint32_t i = 0; i < count; ++i) {
    Require(source.FirstRecord() == kResultOk);
    const std::string id = source.RecordID().Str();
    Require(source.FindRecord(id.c_str()) == kResultOk);
    Require(source.RecordID().Str() == id);
    Require(source.DeleteRecord() == kResultOk);
  }
  for (const bool call : {false, true}) {
    PWRecord record;
    PWTaskRecord todo(&record);
    todo.Call(call);
    todo.Subject("added");
    todo.NoStartDate(true);
    source.AddRecord(record);
  }
}

// A file that was rewritten is whole; one that could not be loaded stays.
void CheckSaved(const pw::MemoryFiles& files, const std::string& before) {
  for (const char* path : kPaths) {
    const std::string saved = files.Get(path).value();
    Require(saved == before || pw::calltask::ReadFrame(saved).isWhole);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  pw::TestPlatform platform;
  for (const char* path : kPaths) platform.files.Put(path, bytes);
  Todos todos;
  auto source = todos.Open();
  if (source == nullptr) return 0;
  UpdateAll(*source);
  source->CloseSource();
  CheckSaved(platform.files, bytes);
  source = todos.Open();
  Require(source != nullptr);
  Change(*source, UpdateAll(*source));
  source->CloseSource();
  CheckSaved(platform.files, bytes);
  return 0;
}
