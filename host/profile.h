#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/outcome.h"

namespace pw {

// What a synchronisation may do with the organiser's data, as a description names it: the engine's
// sync modes by their values.
inline constexpr const char* kSyncModes[] = {"off", "on", "overwrite-next", "overwrite-always"};
inline constexpr std::int32_t kSyncModeOn = 1;

// The value of a word, or nothing if it is none of these.
std::optional<std::int32_t> SyncModeOf(std::string_view word);

// Where a part of the organiser's paths lies on this machine.
struct ProfileDrive {
  std::string prefix;            // the organiser's: a drive "C:", or a folder on one "C:\Data"
  std::filesystem::path folder;  // absolute
};

inline constexpr const char* kDescriptionName = "profile.toml";
inline constexpr std::uintmax_t kLargestDescription = 1 << 20;  // bytes

// What the host knows about one set of the organiser's data: a folder that holds the description
// `profile.toml` and the registry `registry.reg`.
struct Profile {
  std::filesystem::path folder;
  std::optional<std::filesystem::path>
      module;  // absolute; else it is looked for where it is installed
  std::vector<ProfileDrive> drives;
  std::map<std::uint32_t, std::string>
      config;  // the engine's entries, in the organiser's code page
  std::int32_t syncMode = kSyncModeOn;

  std::filesystem::path DescriptionFile() const { return folder / kDescriptionName; }
  std::filesystem::path RegistryFile() const { return folder / "registry.reg"; }

  // The engine's entry of that number, in the organiser's code page; empty where there is none.
  std::string Setting(std::uint32_t id) const;

  // The organiser's path of the data folder, or empty.
  std::string DataFolder() const;
};

// Reads a profile's description. A failure names the file and, where there is one, the line.
Outcome<Profile> ReadProfile(const std::filesystem::path& folder);

// The same from the text of the file `folder`/profile.toml.
Outcome<Profile> ParseProfile(std::string_view text, const std::filesystem::path& folder);

// The text between quotes, as a description has it. UTF-8.
std::string TomlText(const std::string& text);

// The description as a person would write it. Folders within the profile are written relative to
// it.
std::string RenderProfile(const Profile& profile);

}  // namespace pw
