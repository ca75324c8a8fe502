#include "host/import/importer.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <ostream>
#include <utility>

#include "base/codepage.h"
#include "base/text.h"
#include "cardfile/format.h"
#include "host/catalogue.h"
#include "host/check/card_check.h"
#include "host/import/record_limits.h"
#include "host/import/series_keys.h"
#include "host/text_table.h"
#include "platform/whole_file.h"

namespace pw {
namespace {

constexpr std::size_t kRecordsPerProgress = 250;

// Why a save of the cardfile would lose some of it; empty where it wouldn't.
std::string DamageOfCardfile(const std::string& location) {
  const auto bytes = ReadWholeFile(location, cardfile::kLargestFile);
  if (!bytes) return {};
  for (const Finding& finding : CheckCardfile(*bytes).findings) {
    if (finding.lost > 0) return finding.text;
  }
  return {};
}

// Ids of new cards go on from the highest one that was read.
void WalkCards(PWSource& source) {
  for (PWRESULT at = source.FirstRecord(); at == kResultOk; at = source.NextRecord()) {
    PWRecord record;
    source.ReadRecord(&record);
  }
}

// What a person knows the record by.
std::string LabelOf(const IncomingRecord& incoming, const RecordForm& form) {
  PWRecord record = incoming.record;
  const Json json = form.toJson(record);
  std::string text;
  if (json.contains("fields")) {
    for (const Json& field : json["fields"]) {
      if (text.empty()) text = field[1].get<std::string>();
    }
  } else {
    text = json.value(json.contains("Subject") ? "Subject" : "City", "");
  }
  return text.empty() ? incoming.where : incoming.where + " (" + OneLine(text) + ")";
}

// Of a card the fields that were given a text.
std::string DifferentFields(const Json& given, const Json& kept) {
  std::vector<std::string> names;
  for (const Json& field : given) {
    const bool isKept = std::find(kept.begin(), kept.end(), field) != kept.end();
    if (!field[1].get<std::string>().empty() && !isKept) {
      names.push_back(field[0].get<std::string>());
    }
  }
  return JoinNonEmpty(names, ", ");
}

// The names of what was given and isn't kept so. What is as in a fresh record wasn't given.
std::string Differences(const Json& given, const Json& kept, const Json& fresh) {
  if (given.contains("fields")) return DifferentFields(given["fields"], kept["fields"]);
  std::vector<std::string> names;
  for (const auto& [name, value] : given.items()) {
    const bool wasGiven = fresh.value(name, Json()) != value;
    if (wasGiven && kept.value(name, Json()) != value) names.push_back(name);
  }
  return JoinNonEmpty(names, ", ");
}

}  // namespace

Importer::Importer(EngineRun& run, const Console& console, std::string typeName, bool update)
    : run(run),
      console(console),
      type(std::move(typeName)),
      update(update),
      form(*FindRecordForm(type)) {}

Outcome<Done> Importer::Into(const PWSourceCategory& category,
                             std::vector<IncomingRecord>& records) {
  auto opened = OpenForReading(run, type, category);
  if (!opened) return opened.Why();
  std::string damage = opened->problems.empty() ? std::string() : opened->problems.front();
  if (type == kContactType) {
    damage = DamageOfCardfile(category.Location.Str());
    if (!damage.empty()) damage = run.NativePathOf(category.Location.Str()) + ": " + damage;
  }
  if (!damage.empty()) {
    // Without a change it saves nothing, but the organiser gets its files back.
    opened->source->CloseSource();
    return Failure{damage + "; nothing is written to a damaged file"};
  }
  PWSource& source = *opened->source;
  if (type == kContactType) WalkCards(source);
  std::optional<SeriesKeys> keys;
  if (type == kCalendarType) keys.emplace(source, records, run.Objects().clock);
  arrived.clear();
  for (std::size_t i = 0; i < records.size(); ++i) {
    Bring(source, records[i]);
    ShowProgress(i + 1, records.size());
  }
  if (source.CloseSource() != kResultOk) {
    return Failure{run.NativePathOf(category.Location.Str()) + ": could not be saved"};
  }
  Compare(category);
  return Done{};
}

void Importer::Bring(PWSource& source, IncomingRecord& incoming) {
  const std::string tooLong = WhyTooLong(incoming.record, type);
  if (!tooLong.empty()) {
    ++counts.refused;
    return Tell(incoming, "refused, as " + tooLong);
  }
  PWRecord given = incoming.record;
  const bool isStored = Store(source, incoming);
  TellLog(incoming);
  if (!isStored) {
    ++counts.refused;
    return Tell(incoming, "refused by the organiser's plug-in");
  }
  for (const std::string& remark : incoming.remarks) Tell(incoming, remark);
  arrived.push_back({&incoming, given, source.RecordID().Str()});
}

// A source may answer 0 although it has no form for the record.
bool Importer::Store(PWSource& source, IncomingRecord& incoming) {
  const std::string id = Utf8ToCodePageLossy(incoming.id);
  if (update && !id.empty() && source.FindRecord(id.c_str()) == kResultOk) {
    if (source.UpdateRecord(incoming.record) != kResultOk) return false;
    ++counts.updated;
    return true;
  }
  // The clocks are always the same eight.
  if (!HasCategories(type)) return false;
  const std::uint32_t before = source.RecordCount();
  if (source.AddRecord(incoming.record) != kResultOk) return false;
  if (source.RecordCount() == before) return false;
  ++counts.added;
  return true;
}

// As they stand in the file now.
void Importer::Compare(const PWSourceCategory& category) {
  const auto opened = OpenForReading(run, type, category);
  if (!opened) return;
  for (const Arrived& each : arrived) CompareOne(*opened->source, each);
  opened->source->CloseSource();
}

void Importer::CompareOne(PWSource& source, const Arrived& each) {
  PWRecord kept;
  const bool isRead =
      source.FindRecord(each.id.c_str()) == kResultOk && source.ReadRecord(&kept) == kResultOk;
  if (!isRead) return;
  PWRecord given = each.given;
  PWRecord fresh;
  const std::string names = Differences(form.toJson(given), form.toJson(kept), form.toJson(fresh));
  if (!names.empty()) Tell(*each.incoming, "kept with another " + names);
  if (!names.empty() || !each.incoming->remarks.empty()) ++counts.changed;
}

void Importer::Tell(const IncomingRecord& incoming, const std::string& what) {
  console.messages << "pairwise: " << LabelOf(incoming, form) << ": " << what << "\n";
}

void Importer::TellLog(const IncomingRecord& incoming) {
  for (const LogLine& line : run.Objects().log) Tell(incoming, CodePageToUtf8(line.text));
  run.Objects().log.clear();
}

void Importer::ShowProgress(std::size_t done, std::size_t all) const {
  if (!console.isAsking || all < kRecordsPerProgress) return;
  if (done % kRecordsPerProgress != 0 && done != all) return;
  console.messages << "\r" << done << " of " << all << (done == all ? "\n" : "") << std::flush;
}

}  // namespace pw
