#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <system_error>

#include <CLI/CLI.hpp>

#include "host/city_table.h"
#include "host/commands/commands.h"
#include "host/commands/profile_run.h"
#include "host/native_file.h"
#include "host/organiser_folder.h"
#include "host/system_zones/system_cities.h"
#include "host/text_table.h"
#include "platform/platform.h"

// `pairwise cities`: shows the organiser's cities, and makes new ones of this machine's zones.
namespace pw {
namespace {

namespace fs = std::filesystem;

constexpr const char* kCityFile = "cityinfo.dat";
constexpr const char* kZoneFile = "timezone.dat";

struct CitiesOptions {
  std::string file;
  std::optional<std::string> newFile;
  bool force = false;
  bool table = false;
};

int Show(const Console& console, const std::string& file, const Outcome<std::string>& bytes,
         bool table) {
  if (!bytes) return console.Fail(bytes.Why());
  const auto listing = ListCities(*bytes);
  if (!listing) return console.Fail({file + ": " + listing.Why().message});
  const TextTable cities = CityTable(listing->cities);
  console.out << (console.outIsTerminal || table ? RenderForPeople(cities, console.width)
                                                 : RenderForPrograms(cities));
  if (!listing->isCutOff) return kExitDone;
  console.Fail({file + ": cut off within a city, which is left out"});
  return kExitSomeSkipped;
}

Outcome<std::string> ReadOrganiserFile(const EngineRun& run, const std::string& path) {
  const auto file = CurrentPlatform().files->Open(path, OpenMode::kRead, Sharing::kReadWrite);
  if (file == nullptr) return Failure{run.NativePathOf(path) + ": not there, or not readable"};
  std::string bytes = file->Read(kLargestCityFile + 1);
  if (bytes.size() > kLargestCityFile) return Failure{run.NativePathOf(path) + ": too large"};
  return bytes;
}

int ShowOfProfile(EngineRun& run, const CommandLine& line, bool table) {
  std::string path = OrganiserFolder(run);
  if (path.empty()) {
    return line.console.Fail({(fs::path(line.profileFolder) / "registry.reg").string() +
                              ": no data folder of the organiser's is noted there"});
  }
  if (!path.ends_with('\\') && !path.ends_with('/')) path += '\\';
  path += kCityFile;
  return Show(line.console, run.NativePathOf(path), ReadOrganiserFile(run, path), table);
}

std::int64_t Now() {
  using std::chrono::system_clock;
  return std::chrono::duration_cast<std::chrono::seconds>(system_clock::now().time_since_epoch())
      .count();
}

// A file that must not be lost, if one is there.
std::optional<Failure> InTheWay(const fs::path& file) {
  std::error_code unknown;
  if (!fs::exists(file, unknown)) return {};
  return Failure{file.string() + ": already there; --force replaces it"};
}

int WriteNew(const Console& console, const fs::path& cityFile, bool force) {
  const fs::path zoneFile = cityFile.parent_path() / kZoneFile;
  if (!cityFile.has_filename() || cityFile == zoneFile) {
    return console.FailUsage("--from-system takes the city file's name, such as cityinfo.dat");
  }
  if (!force) {
    for (const fs::path& file : {cityFile, zoneFile}) {
      if (const auto failure = InTheWay(file)) return console.Fail(*failure);
    }
  }
  const auto cities = CitiesOfSystem(SystemZoneFolder(), Now());
  if (!cities) return console.Fail(cities.Why());
  const auto citiesWritten = WriteNativeFile(cityFile, cities->CityFile());
  if (!citiesWritten) return console.Fail(citiesWritten.Why());
  const auto zonesWritten = WriteNativeFile(zoneFile, cities->ZoneFile());
  if (!zonesWritten) return console.Fail(zonesWritten.Why());

  console.out << "Wrote " << cities->cities.size() << " cities in " << int{cities->zones}
              << " zones to " << OneLine(cityFile.string()) << ", with " << kZoneFile
              << " beside it";
  const std::string leftOut = cities->LeftOutText();
  if (!leftOut.empty()) console.out << "; left out " << leftOut;
  console.out << "\n";
  return kExitDone;
}

int Cities(const CommandLine& line, const CitiesOptions& options) {
  if (options.newFile) return WriteNew(line.console, *options.newFile, options.force);
  if (!options.file.empty()) {
    return Show(line.console, options.file, ReadNativeFile(options.file, kLargestCityFile),
                options.table);
  }
  return WithReadingRun(line,
                        [&](EngineRun& run) { return ShowOfProfile(run, line, options.table); });
}

}  // namespace

void AddCitiesCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command =
      app.add_subcommand("cities", "Show the organiser's cities, or make new ones of this machine");
  auto options = std::make_shared<CitiesOptions>();
  CLI::Option* file = command
                          ->add_option("file", options->file,
                                       "City file to show; else the profile's \"cityinfo.dat\"")
                          ->type_name("FILE");
  CLI::Option* newFile =
      command
          ->add_option("--from-system", options->newFile,
                       "Write FILE, and \"timezone.dat\" beside it, from this machine's zones")
          ->type_name("FILE")
          ->excludes(file);
  command->add_flag("--force", options->force, "Replace files that are already there")
      ->needs(newFile);
  command->add_flag("--table", options->table, "Make a table in any case")->excludes(newFile);
  command->callback(
      [&line, options] { line.chosen = [&line, options] { return Cities(line, *options); }; });
}

}  // namespace pw
