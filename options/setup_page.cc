#include "options/setup_page.h"

#include "base/text.h"
#include "framework/config.h"
#include "options/product_texts.h"
#include "platform/platform.h"
#include "plugin/discovery.h"
#include "plugin/string_table.h"

namespace pw::options {
namespace {

constexpr std::int32_t kFolder = 1008;
constexpr std::int32_t kBrowse = 1009;
constexpr std::int32_t kChooseFolder = 1012;
constexpr std::int32_t kFolderLabel = 1013;
constexpr std::int32_t kTitle = 1019;
constexpr std::int32_t kOneFolder = 1020;

// By which a page tells its wizard which buttons it wants.
constexpr std::uint32_t kButtonsMessage = 0x470;
constexpr std::int32_t kBackAndNext = 3;

}  // namespace

void SetupPage::Show(WindowId shownIn) {
  OptionPage::Show(shownIn);
  Windows& windows = *CurrentPlatform().windows;
  windows.Post(windows.Parent(window), {kButtonsMessage, 0, kBackAndNext});
}

void SetupPage::Start() {
  const std::int32_t product = manager.GetProduct();
  const PWString title = LoadString(ProductTextsOf(product).pageTitle);
  installFolder = InstallFolder(product).value_or("");
  folder = installFolder + "\\UserData";
  Add(kTitle, ControlKind::kLabel, FormatString(strings::kSetup, title));
  Add(kChooseFolder, ControlKind::kLabel, FormatString(strings::kChooseFolder, title));
  Add(kFolderLabel, ControlKind::kLabel, TextOfOrganiser(strings::kFolderOf));
  Add(kFolder, ControlKind::kText, folder);
  Add(kBrowse, ControlKind::kButton, "&Browse...");
  Add(kOneFolder, ControlKind::kLabel, TextOfOrganiser(strings::kOneFolderForSetup));
}

std::int32_t SetupPage::Picture() {
  return ProductTextsOf(manager.GetProduct()).setupPicture;
}

void SetupPage::Press(std::int32_t control) {
  if (control != kBrowse) return;
  const auto chosen = Browse(folder);
  if (!chosen || *chosen == folder) return;
  folder = *chosen;
  ShowText(kFolder, folder);
}

bool SetupPage::Next() {
  ReadText(kFolder, folder);
  folder = WithoutLastBackslash(folder);
  manager.Config->String(PWConfig::kDataFolder, folder.c_str());
  manager.Config->String(PWConfig::kInstallFolder, installFolder.c_str());
  if (folder != acceptedFolder) {
    if (wizard != nullptr) wizard->ResetApplicationSource(manager.ApplicationSource);
    acceptedFolder = folder;
  }
  return true;
}

}  // namespace pw::options
