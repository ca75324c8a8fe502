#include "host/answers.h"

#define TOML_EXCEPTIONS 0
#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include <toml++/toml.h>

#include "base/codepage.h"
#include "host/native_file.h"
#include "host/profile.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t kLargestFile = 1 << 20;

// The choices by their values.
constexpr std::array<std::int32_t, 4> kModeControls = {1012, 1007, 1008, 1009};
constexpr std::int32_t kMode = 0;   // one of them
constexpr std::int32_t kSure = -1;  // no control

// How the file names pages and controls, in the order in which they are worked.
struct Name {
  const char* page;
  std::int32_t dialog;
  const char* control;
  std::int32_t number;
};
constexpr Name kNames[] = {
    {"synchronize", kSynchronizeDialog, "mode", kMode},
    {"synchronize", kSynchronizeDialog, "sure", kSure},
    {"folder", kFolderDialog, "browse", 1009},
    {"folder", kFolderDialog, "folder", 1008},
    {"folder", kFolderDialog, "calendar", 1022},
    {"setup", kSetupDialog, "browse", 1009},
    {"setup", kSetupDialog, "folder", 1008},
};

// Reads one file. Each operation returns what is wrong, or nothing.
class Reader {
 public:
  Reader(const fs::path& file, const std::vector<std::int32_t>& dialogs, Answers& answers)
      : file(file), dialogs(dialogs), answers(answers) {}

  using Complaint = std::optional<Failure>;

  Complaint Read(const toml::table& root) {
    if (Complaint wrong = CheckNames(root)) return wrong;
    for (const Name& name : kNames) {
      const toml::node* node = root[name.page][name.control].node();
      if (node == nullptr) continue;
      if (Complaint wrong = Take(name, *node)) return wrong;
    }
    return {};
  }

  std::string Where(const toml::source_region& where) const {
    return file.string() + ":" + std::to_string(where.begin.line);
  }

 private:
  // That everything in the file is something that is asked here.
  Complaint CheckNames(const toml::table& root) const {
    for (const auto& [page, node] : root) {
      const toml::table* table = node.as_table();
      if (table == nullptr || !IsAsked(page.str(), std::nullopt)) {
        return Failure{Where(page.source()) + ": there is no page '" + std::string(page.str()) +
                       "' here"};
      }
      for (const auto& [control, value] : *table) {
        if (IsAsked(page.str(), control.str())) continue;
        return Failure{Where(control.source()) + ": page '" + std::string(page.str()) +
                       "' has no '" + std::string(control.str()) + "'"};
      }
    }
    return {};
  }

  // The page, and that it has the control, if one is named.
  bool IsAsked(std::string_view page, std::optional<std::string_view> control) const {
    return std::any_of(std::begin(kNames), std::end(kNames), [&](const Name& name) {
      return name.page == page && (!control || name.control == *control) &&
             std::find(dialogs.begin(), dialogs.end(), name.dialog) != dialogs.end();
    });
  }

  Complaint Take(const Name& name, const toml::node& node) {
    const std::string where = Where(node.source());
    if (name.number == kSure) {
      const auto sure = node.value<bool>();
      if (!node.is_boolean() || !sure) return Failure{where + ": sure must be true or false"};
      answers.isSure = *sure;
      return {};
    }
    const auto text = node.value<std::string>();
    if (!node.is_string() || !text) {
      return Failure{where + ": " + name.control + " must be a text in quotes"};
    }
    return name.number == kMode ? TakeMode(name, *text, where) : TakeText(name, *text, where);
  }

  Complaint TakeMode(const Name& name, const std::string& word, const std::string& where) {
    const auto mode = SyncModeOf(word);
    if (!mode) {
      return Failure{where +
                     ": mode must be \"off\", \"on\", \"overwrite-next\" or \"overwrite-always\""};
    }
    answers.given.push_back(
        {name.dialog, kModeControls[static_cast<std::size_t>(*mode)], {}, where});
    return {};
  }

  Complaint TakeText(const Name& name, const std::string& text, const std::string& where) {
    const auto known = Utf8ToCodePage(text);
    if (!known) return Failure{where + ": has characters outside of code page 1252"};
    answers.given.push_back({name.dialog, name.number, *known, where});
    return {};
  }

  const fs::path& file;
  const std::vector<std::int32_t>& dialogs;
  Answers& answers;
};

}  // namespace

Outcome<Answers> ParseAnswers(std::string_view text, const fs::path& file,
                              const std::vector<std::int32_t>& dialogs) {
  Answers answers;
  Reader reader(file, dialogs, answers);
  const toml::parse_result parsed = toml::parse(text);
  if (!parsed) {
    const toml::parse_error& wrong = parsed.error();
    return Failure{reader.Where(wrong.source()) + ": " + std::string(wrong.description())};
  }
  if (auto complaint = reader.Read(parsed.table())) return *complaint;
  return answers;
}

Outcome<Answers> ReadAnswers(const fs::path& file, const std::vector<std::int32_t>& dialogs) {
  const Outcome<std::string> text = ReadNativeFile(file, kLargestFile);
  if (!text) return text.Why();
  return ParseAnswers(*text, file, dialogs);
}

}  // namespace pw
