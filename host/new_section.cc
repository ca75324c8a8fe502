#include "host/new_section.h"

#include <algorithm>

#include "base/codepage.h"
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

std::string StemOf(EngineRun& run, const std::string& name) {
  return run.Objects().config.String(PWConfig::kDataFolder).Str() + "\\" + name;
}

// For a person.
std::string NameOf(EngineRun& run, const std::string& name) {
  return run.NativePathOf(StemOf(run, name) + memo::kSectionFile) + ": section '" +
         CodePageToUtf8(name) + "'";
}

}  // namespace

// Where the file of the sections is missing the module makes all three anew, and one that it can't
// read it leaves alone without a word.
std::optional<Failure> WhatIsInTheWayOfSection(EngineRun& run, const std::string& name) {
  const std::string stem = StemOf(run, name);
  const auto file = FileThere(stem);
  if (!file) return std::nullopt;
  const auto sections = SectionNames(stem);
  if (!sections || LookAtBinder(stem + ";" + name).isDamaged) {
    return Failure{run.NativePathOf(*file) +
                   ": is there already, and what there is of the binder is damaged or not "
                   "complete; see `pairwise check`"};
  }
  if (!Has(*sections, name)) return std::nullopt;
  return Failure{NameOf(run, name) + " is there already"};
}

Outcome<std::string> MakeSection(EngineRun& run, const std::string& name) {
  const PWRESULT result = run.Manager().NewCategory(name.c_str(), kMemoType, nullptr);
  const auto sections = SectionNames(StemOf(run, name));
  if (result == kResultOk && sections && Has(*sections, name)) return NameOf(run, name);
  if (auto said = TakeLoggedFailure(run)) return *said;
  return Failure{NameOf(run, name) + " could not be made"};
}

}  // namespace pw
