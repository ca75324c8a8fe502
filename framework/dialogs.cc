#include "framework/dialogs.h"

#include <algorithm>

#include "base/text.h"
#include "framework/application.h"
#include "platform/path.h"
#include "platform/platform.h"

namespace {

bool IsFileName(const std::string& entry) {
  return entry.find('.') != std::string::npos;
}

bool Meets(const std::string& file, const std::string& entry) {
  return IsFileName(entry) ? pw::EqualIgnoringCase(file, entry)
                           : pw::EndsWithIgnoringCase(file, "." + entry);
}

// What a folder lacks of what is required of it; nothing if it lacks none.
std::optional<std::string> MissingFiles(const std::string& folder,
                                        const std::vector<std::string>& required) {
  const auto found = pw::CurrentPlatform().files->Find(folder + "\\*");
  std::vector<std::string> missing;
  for (const std::string& entry : required) {
    const bool met = std::any_of(found.begin(), found.end(), [&](const pw::FoundFile& file) {
      return !file.isFolder && Meets(file.name, entry);
    });
    if (!met) missing.push_back(IsFileName(entry) ? entry : "a ." + entry + " file");
  }
  if (missing.empty()) return std::nullopt;
  if (!pw::CurrentPlatform().files->Exists(folder)) return "There is no folder " + folder + ".";
  return folder + " lacks: " + pw::JoinNonEmpty(missing, ", ") + ".";
}

}  // namespace

PWHelp::PWHelp(const char* name, bool /*flag*/) {
  pw::CurrentPlatform().dialogs->EnterHelp(pw::TextOf(name));
}

PWHelp::~PWHelp() {
  pw::CurrentPlatform().dialogs->LeaveHelp();
}

PWBrowseFolder::PWBrowseFolder(pw::WindowId parent, const char* productName,
                               const char* startFolder, PWStringVector& requiredFiles)
    : parent(parent), productName(productName), folder(startFolder) {
  for (std::uint32_t i = 0; i < requiredFiles.Count(); ++i) {
    required.push_back(requiredFiles.At(i)->Str());
  }
}

bool PWBrowseFolder::DoModal() {
  const auto chosen = pw::CurrentPlatform().dialogs->ChooseFolder(
      parent, productName.Str(), folder.Str(),
      [this](const std::string& candidate) { return MissingFiles(candidate, required); });
  if (!chosen) return false;
  if (*chosen != folder.View()) folder = pw::PlainPath(*chosen);
  return true;
}

pw::WindowId MainWindowId() {
  const PWWindow* window = PWApplication::MainWindow();
  return window == nullptr ? pw::kNoWindow : window->Id();
}

void CPropertyPage::Show(pw::WindowId shownIn) {
  window = shownIn;
  if (started) return;
  started = true;
  Start();
}

void CPropertyPage::Help() {
  pw::CurrentPlatform().dialogs->ShowHelp();
}

void CPropertyPage::Add(std::int32_t number, pw::ControlKind kind, const std::string& text) {
  controls.push_back({number, kind, text, {}, false, {}});
}

pw::DialogControl* CPropertyPage::Control(std::int32_t number) {
  const auto found =
      std::find_if(controls.begin(), controls.end(),
                   [&](const pw::DialogControl& control) { return control.number == number; });
  return found == controls.end() ? nullptr : &*found;
}

void CPropertyPage::ReadText(std::int32_t number, std::string& out) {
  if (const pw::DialogControl* control = Control(number)) out = control->text;
}

void CPropertyPage::ShowText(std::int32_t number, const std::string& text) {
  if (pw::DialogControl* control = Control(number)) control->text = text;
}

std::vector<pw::PageModel*> CPropertySheet::Pages() {
  std::vector<pw::PageModel*> models;
  for (const auto& page : pages) models.push_back(page.get());
  return models;
}

CWizardSheet::~CWizardSheet() = default;

pw::SheetAnswer CPropertySheet::DoModal(pw::WindowId parent) {
  const pw::SheetAnswer answer = pw::CurrentPlatform().dialogs->ShowSheet(parent, *this);
  if (answer == pw::SheetAnswer::kOk) {
    for (const auto& page : pages) page->Accept();
  }
  return answer;
}
