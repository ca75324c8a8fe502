#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

// What no compiler checks: that every test is built, that folders include only what lies below
// them, and what the module shows to the outside.
namespace {

namespace fs = std::filesystem;

const fs::path kSource = SOURCE_FOLDER;

// All folders of what is delivered, each below those behind it.
constexpr const char* kFolders[] = {"base",     "platform", "framework", "timeplace",
                                    "cardfile", "calendar", "calltask",  "memo",
                                    "options",  "plugin",   "host"};

std::string ReadFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

std::vector<fs::path> SourceFiles(const fs::path& folder) {
  std::vector<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(kSource / folder)) {
    const fs::path extension = entry.path().extension();
    if (extension == ".h" || extension == ".cc") files.push_back(entry.path());
  }
  return files;
}

std::vector<std::string> IncludesOf(const fs::path& file) {
  std::vector<std::string> includes;
  std::istringstream lines(ReadFile(file));
  const std::string opening = "#include \"";
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind(opening, 0) != 0) continue;
    includes.push_back(line.substr(opening.size(), line.rfind('"') - opening.size()));
  }
  return includes;
}

TEST(HouseTest, EveryTestIsBuilt) {
  const std::string commands = ReadFile(COMPILE_COMMANDS);
  int tests = 0;
  for (const fs::path& file : SourceFiles("tests")) {
    const std::string name = file.filename().string();
    if (name.size() < 8 || name.substr(name.size() - 8) != "_test.cc") continue;
    ++tests;
    const std::string relative = file.lexically_relative(kSource).generic_string();
    EXPECT_NE(commands.find(relative), std::string::npos) << relative << " is not built";
  }
  EXPECT_GT(tests, 20);
}

// The lower floor of plugin/, which the stores may use.
const std::set<std::string> kLowerFloor = {"plugin/discovery.h", "plugin/handshake.h",
                                           "plugin/source_manager.h", "plugin/string_table.h"};

// The formats' codecs, which hold no state and which the host may use.
const std::set<std::string> kCodecs = {"calendar/data_format.h",
                                       "calendar/event_days.h",
                                       "calendar/event_format.h",
                                       "calendar/event_detail.h",
                                       "calendar/recurrence_rule.h",
                                       "calendar/name_pair.h",
                                       "calendar/recurring_format.h",
                                       "calltask/block_reader.h",
                                       "calltask/call_format.h",
                                       "calltask/frame_format.h",
                                       "calltask/task_format.h",
                                       "cardfile/card_templates.h",
                                       "cardfile/format.h",
                                       "cardfile/new_file.h",
                                       "memo/format.h",
                                       "memo/location.h",
                                       "timeplace/city_format.h",
                                       "timeplace/clock_format.h",
                                       "timeplace/date.h",
                                       "timeplace/engine_zone.h",
                                       "timeplace/place_format.h",
                                       "timeplace/year_frame.h",
                                       "timeplace/zone_rule.h"};

// What a folder may include beside itself: folders with a slash at their end, or single files.
std::set<std::string> MayInclude(const std::string& folder, const fs::path& file) {
  std::set<std::string> allowed = {"base/"};
  if (folder == "base") return {};
  if (folder == "platform") return allowed;
  allowed.insert("platform/");
  if (folder == "framework") return allowed;
  allowed.insert("framework/");
  if (folder == "host") {
    allowed.insert(kCodecs.begin(), kCodecs.end());
    return allowed;
  }
  if (folder == "plugin") {
    const std::string stem = file.stem().string();
    const bool lower = kLowerFloor.count("plugin/" + stem + ".h") != 0 && stem != "source_manager";
    if (lower) return allowed;
    allowed.insert({"calendar/", "calltask/", "cardfile/", "memo/", "options/", "timeplace/"});
    return allowed;
  }
  allowed.insert(kLowerFloor.begin(), kLowerFloor.end());
  if (folder != "timeplace" && folder != "options") allowed.insert("timeplace/");
  return allowed;
}

bool IsAllowed(const std::string& include, const std::set<std::string>& allowed) {
  for (const std::string& entry : allowed) {
    const bool folder = entry.back() == '/';
    if (folder ? include.rfind(entry, 0) == 0 : include == entry) return true;
  }
  return false;
}

TEST(HouseTest, FoldersIncludeOnlyWhatLiesBelowThem) {
  int includes = 0;
  for (const char* folder : kFolders) {
    for (const fs::path& file : SourceFiles(folder)) {
      auto allowed = MayInclude(folder, file);
      allowed.insert(std::string(folder) + "/");
      for (const std::string& include : IncludesOf(file)) {
        ++includes;
        EXPECT_TRUE(IsAllowed(include, allowed)) << file << " includes " << include;
      }
    }
  }
  EXPECT_GT(includes, 100);
}

TEST(HouseTest, PlatformInterfacesKnowNoImplementation) {
  for (const fs::path& file : SourceFiles("platform")) {
    const std::string relative = file.lexically_relative(kSource).generic_string();
    const bool interface = relative.find('/') == relative.rfind('/');
    const bool testing = relative.rfind("platform/testing/", 0) == 0;
    for (const std::string& include : IncludesOf(file)) {
      const bool posix = include.rfind("platform/posix/", 0) == 0;
      const bool portable = include.rfind("platform/portable/", 0) == 0;
      const bool fake = include.rfind("platform/testing/", 0) == 0;
      EXPECT_FALSE(posix && (interface || testing)) << relative << " includes " << include;
      EXPECT_FALSE(portable && interface) << relative << " includes " << include;
      EXPECT_FALSE(fake && !testing) << relative << " includes " << include;
    }
  }
}

// No two files include each other, over however many others.
class IncludeGraph {
 public:
  explicit IncludeGraph(const std::vector<fs::path>& files) {
    for (const fs::path& file : files) {
      edges[file.lexically_relative(kSource).generic_string()] = IncludesOf(file);
    }
  }
  bool HasCircle() {
    for (const auto& [file, includes] : edges) {
      if (Visit(file)) return true;
    }
    return false;
  }

 private:
  enum class State { kNew, kOpen, kDone };

  bool Visit(const std::string& file) {
    State& state = states[file];
    if (state == State::kDone) return false;
    if (state == State::kOpen) {
      ADD_FAILURE() << file << " comes to include itself";
      return true;
    }
    state = State::kOpen;
    for (const std::string& include : edges[file]) {
      if (Visit(include)) return true;
    }
    states[file] = State::kDone;
    return false;
  }

  std::map<std::string, std::vector<std::string>> edges;
  std::map<std::string, State> states;
};

TEST(HouseTest, NoFilesIncludeEachOther) {
  std::vector<fs::path> files;
  for (const char* folder : kFolders) {
    for (const fs::path& file : SourceFiles(folder)) files.push_back(file);
  }
  EXPECT_FALSE(IncludeGraph(files).HasCircle());
}

TEST(HouseTest, TheModuleExportsOneSymbol) {
  const std::string command = std::string("nm -D --defined-only '") + MODULE_FILE + "'";
  FILE* output = popen(command.c_str(), "r");
  ASSERT_NE(output, nullptr);
  std::vector<std::string> symbols;
  char line[512];
  while (std::fgets(line, sizeof line, output) != nullptr) {
    std::istringstream words(line);
    std::string word;
    while (words >> word) {
    }
    symbols.push_back(word);
  }
  EXPECT_EQ(pclose(output), 0);
  EXPECT_EQ(symbols, std::vector<std::string>{"createObject"});
}

}  // namespace
