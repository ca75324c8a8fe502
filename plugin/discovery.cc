#include "plugin/discovery.h"

#include <array>

#include "base/process_wide.h"
#include "base/text.h"
#include "framework/registry.h"
#include "platform/platform.h"
#include "plugin/source_manager.h"
#include "plugin/string_table.h"

namespace {

struct Edition {
  std::int32_t code;
  std::uint32_t name;  // number of its text
  std::int32_t icon;   // resource
  std::uint32_t mainKey;
  const char* installKey;
  const char* program;
};

constexpr const char* kDesktopInstallKey =
    R"(SOFTWARE\Gullwing\PairWise Desktop\Version 1\Install)";
constexpr const char* kInformationManagerInstallKey =
    R"(SOFTWARE\Gullwing\ORB PairWise Information Manager\Version 1\Install)";

// An edition that isn't known goes as the information manager, but for its main key.
constexpr std::array<Edition, 5> kEditions = {{
    {product::kUnknown, strings::kNameInformationManager, 131, strings::kMainKeyDesktop,
     kInformationManagerInstallKey, "ORBPIM.EXE"},
    {product::kInformationManager, strings::kNameInformationManager, 131,
     strings::kMainKeyInformationManager, kInformationManagerInstallKey, "ORBPIM.EXE"},
    {product::kWingmate98, strings::kNameWingmate98, 129, strings::kMainKeyWingmate98,
     R"(SOFTWARE\Gullwing\Wingmate 98\Version 1\Install)", "Wingmate.EXE"},
    {product::kDesktop, strings::kNameDesktop, 134, strings::kMainKeyDesktop, kDesktopInstallKey,
     "PWDesktop.EXE"},
    {product::kWingmate99, strings::kNameWingmate99, 138, strings::kMainKeyDesktop,
     kDesktopInstallKey, "Wingmate.EXE"},
}};

// Null for a code that no edition has.
const Edition* FindEdition(std::int32_t code) {
  for (const Edition& edition : kEditions) {
    if (edition.code == code) return &edition;
  }
  return nullptr;
}

// As above, an unlisted code going as the information manager's.
constexpr std::size_t kInformationManagerRow = 1;
static_assert(kEditions[kInformationManagerRow].code == product::kInformationManager);

const Edition& EditionOf(std::int32_t code) {
  const Edition* edition = FindEdition(code);
  return edition != nullptr ? *edition : kEditions[kInformationManagerRow];
}

constexpr const char* kWingmate98Key = R"(SOFTWARE\GULLWING\Wingmate 98)";
constexpr const char* kDesktopKey = R"(SOFTWARE\GULLWING\PairWise Desktop\Version 1\Main)";
constexpr const char* kInformationManagerKey =
    R"(SOFTWARE\GULLWING\ORB PairWise Information Manager)";

bool KeyExists(const char* path) {
  PWRegistry registry;
  return registry.Open(path, false) != 0;
}

// Whether the desktop program lies where its key says; nothing is known without the key.
std::optional<bool> DesktopProgramExists() {
  PWRegistry registry;
  if (registry.Open(kDesktopKey, false) == 0) return std::nullopt;
  PWString path;
  registry.Read("EXE", path);
  registry.Close();
  path += "\\PWDesktop.EXE";
  return pw::CurrentPlatform().files->Exists(path.Str());
}

// The longest text, without its terminator, that the default user's path is taken in.
constexpr std::size_t kUserNameLimit = 255;

pw::ProcessWide<PWString> displayName;

}  // namespace

std::optional<std::uint32_t> MainKeyOf(std::int32_t code) {
  const Edition* edition = FindEdition(code);
  if (edition == nullptr) return std::nullopt;
  return edition->mainKey;
}

std::optional<std::string> InstallFolder(std::int32_t code) {
  PWRegistry registry;
  PWString installed;
  if (registry.Open(EditionOf(code).installKey, false) == 0 ||
      registry.Read("InstallDir", installed) == 0) {
    return std::nullopt;
  }
  return pw::WithoutLastBackslash(installed.Str());
}

std::int32_t WMSourceManager::GetProduct() {
  if (Product != product::kUnknown || Config == nullptr) return Product;
  const PWString& key = Config->String(PWConfig::kProductKey);
  if (key.IsEmpty()) return product::kUnknown;
  PWRegistry registry;
  if (registry.Open(key, false) == 0) return product::kUnknown;
  std::uint32_t code = 0;
  registry.Read("PRODUCT", &code);
  Product = static_cast<std::int32_t>(code);
  return Product;
}

const PWString& WMSourceManager::Name() {
  // A code that no edition has leaves the text of the last call.
  const Edition* edition = FindEdition(GetProduct());
  if (edition != nullptr) displayName->Load(ModuleInstance(), edition->name);
  return *displayName;
}

pw::IconHandle WMSourceManager::Icon() {
  if (IconHandle != nullptr) return IconHandle;
  const Edition* edition = FindEdition(GetProduct());
  if (edition != nullptr) IconHandle = pw::CurrentPlatform().dialogs->LoadIcon(edition->icon);
  return IconHandle;
}

bool WMSourceManager::IsInstalled() {
  switch (GetProduct()) {
    case product::kWingmate98:
      return KeyExists(kWingmate98Key);
    case product::kDesktop:
      return DesktopProgramExists().value_or(false);
    case product::kWingmate99: {
      // Reversed on purpose: the edition 99 counts as installed just where the desktop program is
      // not.
      const auto desktop = DesktopProgramExists();
      return desktop && !*desktop;
    }
    case product::kInformationManager:
    case product::kUnknown:
      return KeyExists(kInformationManagerKey);
    default:
      return false;
  }
}

PWRESULT WMSourceManager::LaunchApplication() {
  const std::int32_t code = GetProduct();
  const auto installed = InstallFolder(code);
  if (!installed) return kResultFailed;
  const std::string folder = *installed + "\\Program\\";
  const std::string program = folder + EditionOf(code).program;
  if (!pw::CurrentPlatform().files->Exists(program)) return kResultFailed;
  pw::CurrentPlatform().shell->Execute({"open", program, "", folder, 1});
  return kResultOk;
}

bool WMSourceManager::FindDefaultCalendar(PWString& out) {
  std::string key = LoadString(EditionOf(GetProduct()).mainKey).Str();
  key.resize(key.rfind('\\') + 1);
  key += LoadString(strings::kCalendarTaskKey).View();

  const auto opened = pw::CurrentPlatform().registry->Open(key, pw::RegistryAccess::kReadWrite);
  if (opened == nullptr) return false;
  const auto path =
      pw::ReadText(*opened, LoadString(strings::kDefaultUserName).Str(), kUserNameLimit);
  if (!path) return false;

  out = *path;
  const std::size_t separator = path->rfind('\\');
  if (separator == std::string::npos) {
    Config->String(PWConfig::kCalendarStem, path->c_str());
    return true;
  }
  Config->String(PWConfig::kCalendarStem, path->substr(separator + 1).c_str());
  Config->String(PWConfig::kDataFolder, path->substr(0, separator).c_str());
  return true;
}
