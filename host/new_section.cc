#include "host/new_section.h"

#include <algorithm>
#include <optional>

#include "host/binder_files.h"
#include "host/record_reader.h"
#include "memo/format.h"
#include "platform/platform.h"

namespace pw {
namespace {

std::optional<std::string> FileThere(const std::string& stem) {
  for (const char* ending : {memo::kSectionFile, memo::kHeaderFile, memo::kContentFile}) {
    if (CurrentPlatform().files->Exists(stem + ending)) return stem + ending;
  }
  return std::nullopt;
}

bool Has(const std::vector<std::string>& sections, const std::string& name) {
  return std::find(sections.begin(), sections.end(), name) != sections.end();
}

// Where the file of the sections is missing the module makes all three anew, and one that it can't
// read it leaves alone without a word.
std::optional<Failure> WhatIsInTheWay(EngineRun& run, const std::string& stem,
                                      const std::string& name) {
  const auto file = FileThere(stem);
  if (!file) return std::nullopt;
  const auto sections = SectionNames(stem);
  if (!sections || LookAtBinder(stem + ";" + name).isDamaged) {
    return Failure{run.NativePathOf(*file) +
                   ": is there already, and what there is of the binder is damaged or not "
                   "complete; see `pairwise check`"};
  }
  if (!Has(*sections, name)) return std::nullopt;
  return Failure{run.NativePathOf(stem + ";" + name) + ": is there already"};
}

}  // namespace

Outcome<std::string> MakeSection(EngineRun& run, const std::string& name) {
  const std::string stem = run.Objects().config.String(PWConfig::kDataFolder).Str() + "\\" + name;
  if (auto failure = WhatIsInTheWay(run, stem, name)) return *failure;
  PWString location;
  const PWRESULT result = run.Manager().NewCategory(name.c_str(), kMemoType, &location);
  const auto sections = SectionNames(stem);
  if (result == kResultOk && sections && Has(*sections, name)) return location.Str();
  return Failure{run.NativePathOf(location.Str()) + ": could not be made"};
}

}  // namespace pw
