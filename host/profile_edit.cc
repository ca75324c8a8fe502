#include "host/profile_edit.h"

#define TOML_EXCEPTIONS 0
#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include <toml++/toml.h>

#include "base/codepage.h"

namespace pw {
namespace {

constexpr const char* kConfig = "config";
constexpr const char* kSync = "sync";

struct Edit {
  std::size_t from;  // bytes of the text
  std::size_t to;
  std::string with;
};

std::size_t StartOfLine(std::string_view text, std::size_t line) {
  std::size_t at = 0;
  while (--line > 0) at = std::min(text.find('\n', at), text.size() - 1) + 1;
  return at;
}

std::size_t StartOfNextLine(std::string_view text, std::size_t line) {
  return std::min(StartOfLine(text, line + 1), text.size());
}

// Columns are counted in characters of UTF-8, from 1.
std::size_t OffsetOf(std::string_view text, const toml::source_position& where) {
  std::size_t at = StartOfLine(text, where.line);
  for (toml::source_index column = 1; column < where.column && at < text.size(); ++column) {
    ++at;
    while (at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80) ++at;
  }
  return at;
}

// Collects what is to be changed in one description.
class Editor {
 public:
  Editor(std::string_view text, const toml::table& root) : text(text), root(root) {}

  void SetSync(std::int32_t mode) {
    const char* const word = kSyncModes[mode];
    const toml::node* node = root.get(kSync);
    if (node != nullptr) return Replace(*node, word);
    if (mode == kSyncModeOn) return;
    // Before the first table, as it is no entry of one.
    edits.push_back({0, 0, std::string(kSync) + " = " + TomlText(word) + "\n"});
  }

  void SetEntry(std::uint32_t id, const std::string& value) {
    const toml::table* config = root[kConfig].as_table();
    if (const toml::node* node = config == nullptr ? nullptr : EntryOf(*config, id)) {
      return Replace(*node, value);
    }
    added += std::to_string(id) + " = " + TomlText(value) + "\n";
  }

  std::string Result() {
    AddEntries();
    std::string result(text);
    // From the end on, so that offsets hold.
    std::sort(edits.begin(), edits.end(),
              [](const Edit& a, const Edit& b) { return a.from > b.from; });
    for (const Edit& edit : edits) result.replace(edit.from, edit.to - edit.from, edit.with);
    return result;
  }

 private:
  static const toml::node* EntryOf(const toml::table& config, std::uint32_t wanted) {
    for (const auto& [key, node] : config) {
      const std::string_view name = key.str();
      std::uint32_t id = 0;
      const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), id);
      if (error == std::errc() && end == name.data() + name.size() && id == wanted) return &node;
    }
    return nullptr;
  }

  void Replace(const toml::node& node, const std::string& value) {
    if (node.value_or(std::string()) == value) return;
    const toml::source_region& where = node.source();
    edits.push_back({OffsetOf(text, where.begin), OffsetOf(text, where.end), TomlText(value)});
  }

  // New entries stand first in their table.
  void AddEntries() {
    if (added.empty()) return;
    const toml::table* config = root[kConfig].as_table();
    if (config == nullptr) {
      edits.push_back({text.size(), text.size(), "\n[config]\n" + added});
      return;
    }
    const std::size_t at = StartOfNextLine(text, config->source().begin.line);
    edits.push_back({at, at, added});
  }

  std::string_view text;
  const toml::table& root;
  std::vector<Edit> edits;
  std::string added;
};

std::string Edited(const std::string& text, const Profile& wanted) {
  const toml::parse_result parsed = toml::parse(text);
  if (!parsed) return text;
  Editor editor(text, parsed.table());
  editor.SetSync(wanted.syncMode);
  for (const auto& [id, value] : wanted.config) editor.SetEntry(id, CodePageToUtf8(value));
  return editor.Result();
}

bool Says(const std::string& text, const Profile& wanted) {
  const auto profile = ParseProfile(text, wanted.folder);
  return profile && profile->config == wanted.config && profile->syncMode == wanted.syncMode;
}

}  // namespace

std::string EditedDescription(const std::string& text, const Profile& wanted) {
  std::string edited = Edited(text, wanted);
  return Says(edited, wanted) ? edited : RenderProfile(wanted);
}

}  // namespace pw
