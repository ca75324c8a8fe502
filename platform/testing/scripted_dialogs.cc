#include "platform/testing/scripted_dialogs.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace pw {

// The same as on this machine's platform, so that a program may hold both.
struct IconResource {
  std::int32_t number;
};

namespace {

[[noreturn]] void EndTest(const char* why) {
  std::fprintf(stderr, "%s\n", why);
  std::abort();
}

template <class T>
std::optional<T> TakeFront(std::deque<T>& answers) {
  if (answers.empty()) return std::nullopt;
  T answer = std::move(answers.front());
  answers.pop_front();
  return answer;
}

}  // namespace

ScriptedDialogs::~ScriptedDialogs() {
  for (const IconHandle icon : icons) delete icon;
}

BoxAnswer ScriptedDialogs::ShowMessage(WindowId parent, const std::string& title,
                                       const std::string& text, std::uint32_t flags) {
  boxes.push_back({parent, title, text, flags, Help()});
  return TakeFront(boxAnswers).value_or(SafeAnswer(flags));
}

SheetAnswer ScriptedDialogs::ShowSheet(WindowId parent, SheetModel& sheet) {
  Sheet shown{parent, sheet.Title(), {}, Help()};
  for (PageModel* page : sheet.Pages()) shown.captions.push_back(page->Caption());
  sheets.push_back(std::move(shown));
  const auto answer = TakeFront(sheetAnswers);
  return answer ? (*answer)(sheet) : SheetAnswer::kCancel;
}

std::optional<std::string> ScriptedDialogs::ChooseFolder(WindowId parent, const std::string& title,
                                                         const std::string& startFolder,
                                                         const FolderComplaint& complaint) {
  FolderChoice choice{parent, title, startFolder, {}, Help()};
  std::optional<std::string> chosen;
  while (!chosen && !folderAnswers.empty()) {
    chosen = TakeFront(folderAnswers);
    const auto wrong = complaint ? complaint(*chosen) : std::nullopt;
    if (!wrong) continue;
    choice.complaints.push_back(*wrong);
    chosen.reset();
  }
  folderChoices.push_back(std::move(choice));
  return chosen;
}

void ScriptedDialogs::LeaveHelp() {
  if (helpContexts.empty()) EndTest("help was left more often than entered");
  helpContexts.pop_back();
}

std::int32_t ScriptedDialogs::IconNumber(IconHandle icon) const {
  if (icons.count(icon) == 0) EndTest("the number of an icon was asked for that isn't there");
  return icon->number;
}

IconHandle ScriptedDialogs::LoadIcon(std::int32_t resource) {
  if (missingIcons.count(resource) != 0) return nullptr;
  return *icons.insert(new IconResource{resource}).first;
}

void ScriptedDialogs::DestroyIcon(IconHandle icon) {
  if (icon == nullptr) return;
  if (icons.erase(icon) == 0) EndTest("an icon was destroyed that isn't there");
  delete icon;
}

}  // namespace pw
