#include "options/synchronize_page.h"

#include <array>

#include "base/text.h"
#include "framework/application.h"
#include "options/product_texts.h"
#include "platform/platform.h"
#include "plugin/string_table.h"

namespace pw::options {
namespace {

constexpr std::int32_t kTitle = 0;  // it has no number
constexpr std::int32_t kFrame = 1016;
constexpr std::int32_t kVersion = 1021;
constexpr std::int32_t kSynchronize = 1007;

struct Mode {
  std::int32_t control;
  const char* text;
  bool deletes;
};

// By their values, from 0.
constexpr std::array<Mode, 4> kModes = {{
    {1012, "&Do not synchronize", false},
    {kSynchronize, "&Synchronize", false},
    {1008, "Delete and &overwrite during next synchronization", true},
    {1009, "A&lways delete and overwrite", true},
}};

bool Deletes(std::int32_t mode) {
  return mode >= 0 && mode < static_cast<std::int32_t>(kModes.size()) &&
         kModes[static_cast<std::size_t>(mode)].deletes;
}

// The third word is hexadecimal. A module without a version shows none.
std::string VersionText() {
  std::string text = "PairWise Version ";
  const auto version = CurrentPlatform().shell->ModuleVersion();
  if (!version) return text;
  const auto word = [&](unsigned shift) { return static_cast<int>((*version >> shift) & 0xFFFF); };
  return text + Format("%d.%d.%X.%d", word(48), word(32), word(16), word(0));
}

}  // namespace

SynchronizePage::SynchronizePage(WMSourceManager& manager)
    : OptionPage(manager, kDialog), mode(manager.ApplicationSource->SyncMode) {}

void SynchronizePage::Start() {
  const ProductTexts& texts = ProductTextsOf(manager.GetProduct());
  Add(kTitle, ControlKind::kLabel, LoadString(texts.pageTitle).Str());
  Add(kVersion, ControlKind::kLabel, VersionText());
  Add(kFrame, ControlKind::kLabel, TextOfOrganiser(strings::kDataOf));
  for (std::size_t i = 0; i < kModes.size(); ++i) {
    Add(kModes[i].control, ControlKind::kChoice, kModes[i].text);
    controls.back().chosen = mode == static_cast<std::int32_t>(i);
  }
}

std::int32_t SynchronizePage::Picture() {
  return ProductTextsOf(manager.GetProduct()).synchronizePicture;
}

void SynchronizePage::ReadMode() {
  for (std::size_t i = 0; i < kModes.size(); ++i) {
    const DialogControl* control = Control(kModes[i].control);
    if (control != nullptr && control->chosen) mode = static_cast<std::int32_t>(i);
  }
}

bool SynchronizePage::Leave() {
  ReadMode();
  focus = 0;
  if (mode != acceptedMode && Deletes(mode) &&
      ShowBox(TextOfOrganiser(strings::kSureToDelete),
              kBoxYesNo | kBoxQuestion | kBoxSecondButtonIsDefault) != BoxAnswer::kYes) {
    focus = kSynchronize;
    return false;
  }
  acceptedMode = mode;
  return true;
}

void SynchronizePage::Accept() {
  manager.ApplicationSource->SyncMode = mode;
}

}  // namespace pw::options
