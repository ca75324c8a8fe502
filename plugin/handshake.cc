#include "plugin/handshake.h"

#include <algorithm>
#include <array>

#include "base/process_wide.h"
#include "base/text.h"
#include "framework/application.h"
#include "platform/platform.h"
#include "plugin/string_table.h"

namespace {

constexpr const char* kWindowClass = "Wingmate_95";
constexpr const char* kMessageName = "IWM Pilot Notification";
constexpr const char* kNotesKey = R"(SOFTWARE\Gullwing\Pairwise 1.0\Common)";

// The steps, as the organiser gets them in `wParam`.
enum Step : std::uint32_t {
  kWantsFiles = 0,
  kOpensFiles = 1,
  kFinished = 2,
  kGivesUp = 3,
};

// "Goals" is only ever cleared.
constexpr std::array<const char*, 8> kNotes = {"To Do", "Calendar", "Cardfile", "Write Binder",
                                               "Calls", "Goals",    "Multiday", "Clocks"};

// Set once the notes of an earlier load of the module are cleared.
pw::ProcessWide<bool> notesCleared;

class Organiser {
 public:
  explicit Organiser(std::uint32_t message) : windows(*pw::CurrentPlatform().windows) {
    number = message != 0 ? message : windows.RegisterMessage(kMessageName);
    window = windows.Find(kWindowClass);
  }

  bool IsRunning() const { return window != pw::kNoWindow; }

  // Whether the organiser has a dialog open. That can't be told without a main window with parent
  // and grandparent; and where the organiser is that grandparent, it is the run itself that
  // disables it.
  bool IsBusy() const {
    const PWWindow* mainWindow = PWApplication::MainWindow();
    if (mainWindow == nullptr) return false;
    const pw::WindowId parent = windows.Parent(mainWindow->Id());
    if (parent == pw::kNoWindow) return false;
    const pw::WindowId grandparent = windows.Parent(parent);
    if (grandparent == pw::kNoWindow || grandparent == window) return false;
    return !windows.IsEnabled(window);
  }

  bool Agrees(Step step) const { return windows.Send(window, {number, step, 0}) == 0; }

 private:
  pw::Windows& windows;
  std::uint32_t number;
  pw::WindowId window;
};

void WriteNote(pw::RegistryKey& key, const char* name, std::string_view text) {
  key.Write(name, pw::TextValue(text));
}

// The organiser's task file stands for its call and calendar files, which lie beside it. All notes
// are written with the size of the task file's path, so that a path shorter than the file names
// cuts them.
void WriteTodoNotes(pw::RegistryKey& key, const std::string& path) {
  constexpr std::size_t kFileName = 8;  // "TASK.WMW"
  const std::string stem = path.substr(0, path.size() - std::min(kFileName, path.size()));
  WriteNote(key, "To Do", path);
  WriteNote(key, "Calls", (stem + "call.wmw").substr(0, path.size()));
  WriteNote(key, "Calendar", (stem + "even.wmw").substr(0, path.size()));
}

// The organiser once meant to be told of its data file here, in place of the event file. It looked
// for "Even.WMW", capitals and all, in a path that it had turned to small letters, and so never
// found it: the note has always been the event file's path, in small letters.
void WriteCalendarNotes(pw::RegistryKey& key, const std::string& path) {
  WriteNote(key, "Calendar", path);
  WriteNote(key, "Multiday", pw::AsciiLower(path));
}

void WriteNotes(const std::string& path, std::int32_t kind) {
  const auto key = pw::CurrentPlatform().registry->Create(kNotesKey);
  if (key == nullptr) return;
  if (!*notesCleared) {
    for (const char* name : kNotes) WriteNote(*key, name, "");
    *notesCleared = true;
  }
  switch (kind) {
    case kTodoFiles:
      return WriteTodoNotes(*key, path);
    case kCalendarFiles:
      return WriteCalendarNotes(*key, path);
    case kContactFiles:
      return WriteNote(*key, "Cardfile", path);
    case kTimezoneFiles:
      return WriteNote(*key, "Clocks", path);
    case kMemoFiles:
      return WriteNote(*key, "Write Binder", path);
    default:
      return;
  }
}

// What both later steps come to.
bool Tell(Step step, std::uint32_t message, bool skip) {
  if (skip) return true;
  const Organiser organiser(message);
  return !organiser.IsRunning() || organiser.Agrees(step);
}

}  // namespace

bool IsOrganiserRunning() {
  return pw::CurrentPlatform().windows->Find(kWindowClass) != pw::kNoWindow;
}

std::int32_t NotifyOrganiserOpen(const char* path, std::uint32_t message, std::int32_t kind,
                                 bool skip) {
  if (skip) return kOrganiserOther;
  const Organiser organiser(message);
  if (!organiser.IsRunning()) return kOrganiserOther;
  if (organiser.IsBusy()) return kOrganiserBusy;
  if (path != nullptr && *path != '\0') WriteNotes(path, kind);
  return organiser.Agrees(kWantsFiles) ? kOrganiserAgrees : kOrganiserOther;
}

void LogOrganiserBusy(PWSourceManager& manager) {
  if (manager.Log == nullptr) return;
  const std::string line = FormatString(strings::kOrganiserBusy, manager.Name());
  manager.Log->Add(line.c_str(), kLogFailure);
}

bool NotifyOrganiserLock(std::uint32_t message, bool skip) {
  return Tell(kOpensFiles, message, skip);
}

bool AskOrganiser(const std::string& path, OrganiserFiles kind, bool skip) {
  if (NotifyOrganiserOpen(path.c_str(), 0, kind, skip) == kOrganiserBusy) return false;
  NotifyOrganiserLock(0, skip);
  return true;
}

bool AskOrganiser(PWSourceManager& manager, const std::string& path, OrganiserFiles kind,
                  bool skip) {
  const bool asked = AskOrganiser(path, kind, skip);
  if (!asked) LogOrganiserBusy(manager);
  return asked;
}

bool NotifyOrganiserEnd(bool changed, std::uint32_t message, bool skip) {
  return Tell(changed ? kFinished : kGivesUp, message, skip);
}
