#include "options/folder_page.h"

#include "base/text.h"
#include "framework/application.h"
#include "options/calendar_list.h"
#include "plugin/string_table.h"

namespace pw::options {
namespace {

constexpr std::int32_t kFolder = 1008;
constexpr std::int32_t kBrowse = 1009;
constexpr std::int32_t kOneFolder = 1010;
constexpr std::int32_t kFolderLabel = 1011;
constexpr std::int32_t kCalendar = 1022;
constexpr std::int32_t kCalendarLabel = 0;  // it has no number

// A category's flag that goes with the folder that it was paired in.
constexpr std::uint8_t kPairedFlag = 1;

void ClearPairedFlags(PWApplicationSource& source) {
  for (std::uint32_t i = 0; i < source.Types.Count(); ++i) {
    const auto* type = static_cast<PWAppSrcTypeInfo*>(source.Types.At(i));
    for (std::uint32_t j = 0; j < type->Categories.Count(); ++j) {
      type->Categories.At(j)->Flags.Bit(kPairedFlag, false);
    }
  }
}

// Sets an entry. Whether its text has changed by that.
bool Set(PWConfig& config, std::uint32_t entry, const std::string& value) {
  const bool changes = config.String(entry).View() != value;
  config.String(entry, value.c_str());
  return changes;
}

}  // namespace

void FolderPage::Load(PWConfig& config) {
  folder = config.String(PWConfig::kDataFolder).Str();
  calendarStem = config.String(PWConfig::kCalendarStem).Str();
}

void FolderPage::Apply(PWConfig& config) {
  if (Set(config, PWConfig::kDataFolder, folder)) {
    manager.Config->String(PWConfig::kDataFolder, folder.c_str());
  }
  if (Set(config, PWConfig::kCalendarStem, calendarStem) && !calendarStem.empty()) {
    manager.Config->String(PWConfig::kCalendarStem, calendarStem.c_str());
  }
}

void FolderPage::Start() {
  Add(kOneFolder, ControlKind::kLabel, TextOfOrganiser(strings::kOneFolder));
  Add(kFolderLabel, ControlKind::kLabel, TextOfOrganiser(strings::kFolderOf));
  Add(kFolder, ControlKind::kText, folder);
  Add(kBrowse, ControlKind::kButton, "&Browse...");
  Add(kCalendarLabel, ControlKind::kLabel, "&Calendar/task name:");
  Add(kCalendar, ControlKind::kCombo, "");
  FillCalendars(folder);
}

void FolderPage::FillCalendars(const std::string& ofFolder) {
  DialogControl* calendars = Control(kCalendar);
  if (calendars == nullptr) return;
  calendars->items = CalendarStems(ofFolder);
  calendars->text = SelectedStem(calendars->items, calendarStem);
}

void FolderPage::Press(std::int32_t control) {
  if (control != kBrowse) return;
  const auto chosen = Browse(folder);
  if (!chosen) return;
  if (*chosen != folder) {
    folder = *chosen;
    ShowText(kFolder, folder);
    folderChanged = true;
  }
  FillCalendars(*chosen);
}

bool FolderPage::Leave() {
  ReadText(kFolder, folder);
  ReadText(kCalendar, calendarStem);
  // The control keeps its text, so that leaving once more cuts no more.
  folder = WithoutLastBackslash(folder);
  focus = 0;
  if (calendarStem.empty()) {
    ShowBox(LoadString(strings::kStemEmpty).Str(), kBoxOk);
    focus = kCalendar;
  }
  return true;
}

void FolderPage::Accept() {
  if (!folderChanged) return;
  ClearPairedFlags(*manager.ApplicationSource);
  // The engine looks after the sheet has closed, when the settings name the new folder.
  PWApplication::RefreshCategories(manager.ApplicationSource, true);
  ShowBox(LoadString(strings::kRemapCategories).Str(), kBoxOk);
}

}  // namespace pw::options
