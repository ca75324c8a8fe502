#include "host/profile.h"

#define TOML_EXCEPTIONS 0
#include <algorithm>
#include <charconv>
#include <iterator>
#include <utility>

#include <toml++/toml.h>

#include "base/codepage.h"
#include "framework/config.h"
#include "host/native_file.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kCodePage = 1252;

// Reads one description. Each operation returns what is wrong, or nothing.
class Reader {
 public:
  explicit Reader(Profile& profile) : profile(profile) {}

  using Complaint = std::optional<Failure>;

  Complaint Read(const toml::table& root) {
    for (const auto& [key, node] : root) {
      if (Complaint wrong = Entry(key.str(), key.source(), node)) return wrong;
    }
    return {};
  }

  Failure At(const toml::source_region& where, const std::string& what) const {
    return {profile.DescriptionFile().string() + ":" + std::to_string(where.begin.line) + ": " +
            what};
  }

 private:
  Complaint Entry(std::string_view key, const toml::source_region& where, const toml::node& node) {
    if (key == "codepage") return CodePage(node);
    if (key == "module") return Module(node);
    if (key == "sync") return SyncMode(node);
    if (key == "drives") return Each(node, "drives", &Reader::Drive);
    if (key == "config") return Each(node, "config", &Reader::ConfigEntry);
    return At(where, "unknown entry '" + std::string(key) + "'");
  }

  Complaint CodePage(const toml::node& node) {
    if (node.value<std::int64_t>() == kCodePage) return {};
    return At(node.source(), "codepage must be 1252");
  }

  Complaint Module(const toml::node& node) {
    const auto* text = node.as_string();
    if (text == nullptr || text->get().empty()) {
      return At(node.source(), "module must be the path of a file");
    }
    profile.module = Native(text->get());
    return {};
  }

  Complaint SyncMode(const toml::node& node) {
    const auto mode = SyncModeOf(node.value_or(std::string_view()));
    if (!mode) {
      return At(node.source(),
                "sync must be \"off\", \"on\", \"overwrite-next\" or \"overwrite-always\"");
    }
    profile.syncMode = *mode;
    return {};
  }

  Complaint Each(const toml::node& node, const char* name,
                 Complaint (Reader::*read)(std::string_view, const toml::source_region&,
                                           const std::string&, const toml::source_region&)) {
    const toml::table* table = node.as_table();
    if (table == nullptr) return At(node.source(), std::string(name) + " must be a table");
    for (const auto& [key, value] : *table) {
      const auto* text = value.as_string();
      if (text == nullptr) {
        return At(value.source(),
                  std::string(name) + "." + std::string(key.str()) + " must be a text in quotes");
      }
      Complaint wrong = (this->*read)(key.str(), key.source(), text->get(), value.source());
      if (wrong) return wrong;
    }
    return {};
  }

  Complaint Drive(std::string_view key, const toml::source_region& where, const std::string& folder,
                  const toml::source_region& folderWhere) {
    const auto name = Utf8ToCodePage(key);
    if (!name || !IsDriveOrFolderOnOne(*name)) {
      return At(where, "'" + std::string(key) +
                           "' is neither a drive like C nor a folder like 'C:\\Data'");
    }
    if (folder.empty()) {
      return At(folderWhere, "the folder of drive " + std::string(key) + " is empty");
    }
    const std::string prefix = name->size() == 1 ? *name + ":" : *name;
    const bool isTwice = std::any_of(
        profile.drives.begin(), profile.drives.end(),
        [&](const ProfileDrive& drive) { return EqualFileNames(drive.prefix, prefix); });
    if (isTwice) return At(where, "'" + std::string(key) + "' is there twice");
    profile.drives.push_back({prefix, Native(folder)});
    return {};
  }

  Complaint ConfigEntry(std::string_view key, const toml::source_region& where,
                        const std::string& value, const toml::source_region& valueWhere) {
    std::int32_t id = 0;
    const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), id);
    if (error != std::errc() || end != key.data() + key.size()) {
      return At(where, "'" + std::string(key) + "' is not the number of an entry");
    }
    const auto text = Utf8ToCodePage(value);
    if (!text) {
      return At(valueWhere,
                "entry " + std::string(key) + " has characters outside of code page 1252");
    }
    if (!profile.config.emplace(static_cast<std::uint32_t>(id), *text).second) {
      return At(where, "entry " + std::string(key) + " is there twice");
    }
    return {};
  }

  static bool IsDriveOrFolderOnOne(std::string_view name) {
    const auto isLetter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
    if (name.empty() || !isLetter(name[0])) return false;
    if (name.size() == 1) return true;
    return name[1] == ':' && (name.size() == 2 || name[2] == '\\' || name[2] == '/');
  }

  fs::path Native(const std::string& path) const {
    return (profile.folder / fs::path(path)).lexically_normal();
  }

  Profile& profile;
};

std::string RelativeWhereInside(const fs::path& path, const fs::path& folder) {
  const fs::path relative = path.lexically_relative(folder);
  const bool inside = !relative.empty() && *relative.begin() != "..";
  return inside ? relative.string() : path.string();
}

}  // namespace

std::optional<std::int32_t> SyncModeOf(std::string_view word) {
  const auto found = std::find(std::begin(kSyncModes), std::end(kSyncModes), word);
  if (found == std::end(kSyncModes)) return std::nullopt;
  return static_cast<std::int32_t>(found - std::begin(kSyncModes));
}

// A text between single quotes, where backslashes stand for themselves, unless it holds what can't
// stand there.
std::string TomlText(const std::string& text) {
  std::string out;
  bool literal = true;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\'' || byte < 0x20 || byte == 0x7F) literal = false;
    if (c == '"' || c == '\\') out += '\\';
    if (byte < 0x20 || byte == 0x7F) {
      constexpr const char* kDigits = "0123456789ABCDEF";
      out += "\\u00";
      out += kDigits[byte >> 4];
      out += kDigits[byte & 15];
    } else {
      out += c;
    }
  }
  return literal ? "'" + text + "'" : "\"" + out + "\"";
}

std::string Profile::Setting(std::uint32_t id) const {
  const auto entry = config.find(id);
  return entry == config.end() ? std::string() : entry->second;
}

std::string Profile::DataFolder() const {
  return Setting(PWConfig::kDataFolder);
}

Outcome<Profile> ParseProfile(std::string_view text, const fs::path& folder) {
  Profile profile;
  std::error_code error;
  profile.folder = fs::absolute(folder, error).lexically_normal();
  Reader reader(profile);
  const toml::parse_result parsed = toml::parse(text);
  if (!parsed) {
    const toml::parse_error& wrong = parsed.error();
    return reader.At(wrong.source(), std::string(wrong.description()));
  }
  if (auto complaint = reader.Read(parsed.table())) return *complaint;
  return profile;
}

Outcome<Profile> ReadProfile(const fs::path& folder) {
  const fs::path file = folder / kDescriptionName;
  const Outcome<std::string> text = ReadNativeFile(file, kLargestDescription);
  if (!text) return text.Why();
  return ParseProfile(*text, folder);
}

std::string RenderProfile(const Profile& profile) {
  std::string out = "codepage = 1252\n";
  if (profile.module) {
    out += "module = " + TomlText(RelativeWhereInside(*profile.module, profile.folder)) + "\n";
  }
  if (profile.syncMode != kSyncModeOn) {
    out += "sync = " + TomlText(kSyncModes[profile.syncMode]) + "\n";
  }
  out +=
      "\n# Where the organiser's drives, or single folders of them, lie on this "
      "machine.\n[drives]\n";
  for (const ProfileDrive& drive : profile.drives) {
    out += TomlText(CodePageToUtf8(drive.prefix)) + " = " +
           TomlText(RelativeWhereInside(drive.folder, profile.folder)) + "\n";
  }
  out +=
      "\n# The engine's settings: 2 is the organiser's data folder, 5 the stem of its calendar "
      "files,\n"
      "# 4000 the registry key of its edition.\n[config]\n";
  for (const auto& [id, value] : profile.config) {
    out += std::to_string(id) + " = " + TomlText(CodePageToUtf8(value)) + "\n";
  }
  return out;
}

}  // namespace pw
