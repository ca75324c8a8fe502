#include "host/import/comparison.h"

#include <algorithm>

#include "base/text.h"
#include "host/text_table.h"

namespace pw {
namespace {

constexpr const char* kNoStart = "NoStartDate";

// Of a card the fields that were given a text.
std::vector<std::string> DifferentFields(const Json& given, const Json& kept) {
  std::vector<std::string> names;
  for (const Json& field : given) {
    const bool isKept = std::find(kept.begin(), kept.end(), field) != kept.end();
    if (!field[1].get<std::string>().empty() && !isKept) {
      names.push_back(field[0].get<std::string>());
    }
  }
  return names;
}

// The names of what was given and isn't kept so. What is as in a fresh record wasn't given.
std::vector<std::string> Differences(const Json& given, const Json& kept, const Json& fresh) {
  if (given.contains("fields")) return DifferentFields(given["fields"], kept["fields"]);
  std::vector<std::string> names;
  for (const auto& [name, value] : given.items()) {
    const bool wasGiven = fresh.value(name, Json()) != value;
    if (wasGiven && kept.value(name, Json()) != value) names.push_back(name);
  }
  return names;
}

}  // namespace

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

std::vector<std::string> ChangesOf(PWRecord& given, PWRecord& kept, const RecordForm& form,
                                   const JsonInput& toldOfStored) {
  PWRecord fresh;
  std::vector<std::string> names =
      Differences(form.toJson(given), form.toJson(kept), form.toJson(fresh));
  if (!toldOfStored.is_null()) {
    std::erase_if(names, [&](const std::string& name) { return !toldOfStored.contains(name); });
  }
  std::vector<std::string> changes;
  // Each of the organiser's has a start.
  if (std::erase(names, kNoStart) > 0) changes.emplace_back("got today as its start");
  if (!names.empty()) changes.push_back("kept with another " + JoinNonEmpty(names, ", "));
  return changes;
}

}  // namespace pw
