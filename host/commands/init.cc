#include <filesystem>
#include <iterator>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <system_error>
#include <vector>

#include <CLI/CLI.hpp>

#include "base/codepage.h"
#include "framework/config.h"
#include "host/calendar_stems.h"
#include "host/commands/commands.h"
#include "host/home_city.h"
#include "host/native_file.h"
#include "host/products.h"
#include "host/registry_entry.h"
#include "platform/posix/posix_registry.h"

// `pairwise init`: a profile for data that are already there.
namespace pw {
namespace {

namespace fs = std::filesystem;

struct InitOptions {
  std::string data;
  std::string product;
  std::string registryExport;
  std::string city;
};

constexpr std::uintmax_t kLargestRegistry = 64 << 20;
constexpr const char* kDataFolder = "C:\\Data";
constexpr const char* kHomeCity = "LocalCity";

// What the registry from the old machine tells.
struct OldMachine {
  const Product* product = nullptr;
  std::optional<std::string> dataFolder;
  std::optional<std::string> calendar;  // what the default user's file names begin with
};

std::optional<std::uint32_t> ProductNumber(Registry& registry, const Product& product) {
  const auto key = registry.Open(product.mainKey, RegistryAccess::kRead);
  return key == nullptr ? std::nullopt : ReadNumber(*key, "PRODUCT");
}

// Where the edition was installed, its data folder lies below.
std::optional<std::string> OldDataFolder(Registry& registry, const Product& product) {
  const auto key = registry.Open(InstallKey(product), RegistryAccess::kRead);
  auto folder = key == nullptr ? std::nullopt : ReadText(*key, "InstallDir");
  if (!folder || folder->size() < 3 || folder->compare(1, 2, ":\\") != 0) return {};
  if (folder->back() == '\\') folder->pop_back();
  return *folder + "\\UserData";
}

Outcome<OldMachine> AskRegistry(const fs::path& file, const Product* wanted) {
  PosixRegistry registry({file, RegistryMode::kOverlay, {}});
  if (const auto error = registry.Error()) return Failure{*error};
  OldMachine found;
  for (const Product& product : kProducts) {
    const bool isThere = ProductNumber(registry, product) == product.number;
    if (found.product == nullptr && isThere && (wanted == nullptr || wanted == &product)) {
      found.product = &product;
    }
  }
  if (found.product == nullptr) return found;
  found.dataFolder = OldDataFolder(registry, *found.product);
  const auto users = registry.Open(CalendarKey(*found.product), RegistryAccess::kRead);
  if (users != nullptr) found.calendar = ReadText(*users, kDefaultUser);
  return found;
}

// Whose calendar and to-do files of the folder the profile is for: those of the old machine's
// default user, or else the first. Where there are none yet they will be that user's.
CalendarStem ChooseStem(const Console& console, const fs::path& data,
                        const std::optional<std::string>& calendar) {
  const std::string user = calendar ? calendar->substr(calendar->rfind('\\') + 1) : "";
  const std::vector<CalendarStem> stems = CalendarStems(data);
  if (stems.empty()) return {user, {}, false, false};
  for (const CalendarStem& stem : stems) {
    if (calendar && EqualFileNames(stem.text, user)) return stem;
  }
  if (stems.size() > 1) {
    console.Warn({data.string() + ": several people's calendar and to-do files; those of '" +
                  CodePageToUtf8(stems.front().text) +
                  "' are taken, which [config] 5 of the profile can change"});
  }
  return stems.front();
}

// Names the home city, under the edition's key and all that have another one: the module asks those
// of several editions. A city that is already named stays, unless the person named this one.
Outcome<Done> WriteHomeCity(const Profile& profile, const Product& chosen, const std::string& city,
                            bool isPersons) {
  bool isKnown = false;
  std::vector<std::string> keys = {chosen.mainKey};
  {
    PosixRegistry registry({profile.RegistryFile(), RegistryMode::kOverlay, {}});
    for (const Product& product : kProducts) {
      const auto key = registry.Open(product.mainKey, RegistryAccess::kRead);
      if (key == nullptr || !ReadText(*key, kHomeCity)) continue;
      isKnown = true;
      keys.emplace_back(product.mainKey);
    }
  }
  if (city.empty() || (isKnown && !isPersons)) return Done{};
  for (const std::string& key : keys) {
    auto written = WriteRegistryText(profile, key, kHomeCity, city);
    if (!written) return written;
  }
  return Done{};
}

Outcome<Done> WriteProfile(const Profile& profile, std::string_view registry) {
  const std::string description = RenderProfile(profile);
  const auto readable = ParseProfile(description, profile.folder);
  if (!readable) return Failure{"no profile can be made of this: " + readable.Why().message};
  std::error_code error;
  for (const fs::path& file : {profile.DescriptionFile(), profile.RegistryFile()}) {
    if (fs::exists(file, error)) return Failure{file.string() + ": already there"};
  }
  fs::create_directories(profile.folder, error);
  if (error) return SystemFailure(profile.folder, error.value());
  // The description comes last: with it the profile is one.
  auto written = WriteNativeFile(profile.RegistryFile(), registry);
  if (!written) return written;
  return WriteNativeFile(profile.DescriptionFile(), description);
}

int Init(const CommandLine& line, const InitOptions& options) {
  const Console& console = line.console;
  if (line.profileFolder.empty()) {
    return console.FailUsage("where is the profile to be? Give it as --profile DIR");
  }
  std::error_code error;
  const fs::path data = fs::canonical(options.data, error);
  if (error) return console.Fail(SystemFailure(options.data, error.value()));
  if (!fs::is_directory(data, error)) return console.Fail({options.data + ": not a folder"});

  const Product* product = options.product.empty() ? nullptr : FindProduct(options.product);
  Profile profile;
  profile.folder = fs::absolute(line.profileFolder, error).lexically_normal();
  profile.drives.push_back({kDataFolder, data});

  std::string registry;
  std::optional<std::string> calendar;
  if (!options.registryExport.empty()) {
    auto bytes = ReadNativeFile(options.registryExport, kLargestRegistry);
    if (!bytes) return console.Fail(bytes.Why());
    registry = std::move(*bytes);
    const auto old = AskRegistry(options.registryExport, product);
    if (!old) return console.Fail(old.Why());
    if (old->product == nullptr) {
      return console.Fail(
          {options.registryExport + ": holds no key of " +
           (product == nullptr ? std::string("any edition") : "the edition " + options.product)});
    }
    product = old->product;
    if (old->dataFolder) profile.drives.back().prefix = *old->dataFolder;
    calendar = old->calendar;
  }
  if (product == nullptr) product = &kProducts[0];
  const std::string folder = profile.drives.back().prefix;
  const CalendarStem stem = ChooseStem(console, data, calendar);
  const std::string ownCalendar = folder + "\\" + stem.text;
  const bool isFresh = registry.empty();
  const auto city = options.city.empty() ? HomeCityOfClocks(data) : FindCity(data, options.city);
  if (!city) return console.Fail(city.Why());
  if (isFresh) registry = FreshRegistry(*product, {folder, ownCalendar, *city, stem.isVersion50});
  profile.config[PWConfig::kDataFolder] = folder;
  profile.config[PWConfig::kCalendarStem] = stem.text;
  profile.config[PWConfig::kProductKey] = product->mainKey;

  const auto written = WriteProfile(profile, registry);
  if (!written) return console.Fail(written.Why());
  const bool isNamed = isFresh || (calendar && EqualFileNames(*calendar, ownCalendar));
  if (stem.text.empty() && !isNamed && !CalendarStems(data).empty()) {
    // Such files are found by the default user's path alone, so that must be theirs.
    const auto named = WriteRegistryText(profile, CalendarKey(*product), kDefaultUser, ownCalendar);
    if (!named) return console.Fail(named.Why());
  }
  const auto named = WriteHomeCity(profile, *product, *city, !options.city.empty());
  if (!named) return console.Fail(named.Why());
  console.messages << "made " << profile.folder.string() << ": edition " << product->name << ", "
                   << CodePageToUtf8(profile.drives.back().prefix) << " is " << data.string()
                   << "\n";
  return kExitDone;
}

}  // namespace

void AddInitCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand("init", "Make a profile for the organiser's data folder");
  auto options = std::make_shared<InitOptions>();
  command->add_option("--data", options->data, "Folder that holds the organiser's files")
      ->required()
      ->type_name("FOLDER");
  command
      ->add_option("--product", options->product,
                   "Edition: desktop, 98, 99 or orb; else as the registry says, or desktop")
      ->check(CLI::IsMember({"desktop", "98", "99", "orb"}))
      ->type_name("EDITION");
  command
      ->add_option("--registry", options->registryExport,
                   "Registry of the old machine, as its registry editor exported it")
      ->type_name("FILE");
  command
      ->add_option(
          "--city", options->city,
          "Home city, as cityinfo.dat names it; else as the registry or the home clock says")
      ->type_name("NAME");
  command->callback(
      [&line, options] { line.chosen = [&line, options] { return Init(line, *options); }; });
}

}  // namespace pw
