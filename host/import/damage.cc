#include "host/import/damage.h"

#include <algorithm>

#include "cardfile/format.h"
#include "host/check/binder_check.h"
#include "host/check/card_check.h"
#include "host/record_reader.h"
#include "memo/format.h"
#include "memo/location.h"
#include "platform/whole_file.h"

namespace pw {
namespace {

std::string FirstOf(const FileCheck& check) {
  const auto found = std::find_if(check.findings.begin(), check.findings.end(),
                                  [](const Finding& finding) { return !finding.isNote; });
  return found == check.findings.end() ? std::string() : found->text;
}

std::string DamageOfCardfile(const std::string& location) {
  const auto bytes = ReadWholeFile(location, cardfile::kLargestFile);
  return bytes ? FirstOf(CheckCardfile(*bytes)) : std::string();
}

// What the files say of each other is looked at when the binder is opened.
std::string DamageOfBinder(const std::string& location) {
  const std::string stem = memo::Location(location).stem;
  const auto read = [&](const char* file) {
    return ReadWholeFile(stem + file, memo::kLargestHeaders).value_or("");
  };
  const std::string damage = FirstOf(CheckSectionFile(read(memo::kSectionFile)));
  return damage.empty() ? FirstOf(CheckNoteHeaders(read(memo::kHeaderFile))) : damage;
}

std::string DamageOf(std::string_view type, const std::string& location) {
  if (type == kContactType) return DamageOfCardfile(location);
  return type == kMemoType ? DamageOfBinder(location) : std::string();
}

}  // namespace

Failure NothingWritten(const std::string& damage) {
  return {damage + "; nothing is written to a damaged file"};
}

std::optional<Failure> WhyDamaged(const EngineRun& run, std::string_view type,
                                  const PWSourceCategory& category) {
  const std::string location = category.Location.Str();
  const std::string damage = DamageOf(type, location);
  if (damage.empty()) return std::nullopt;
  return NothingWritten(run.NativePathOf(location) + ": " + damage);
}

}  // namespace pw
