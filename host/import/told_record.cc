#include "host/import/told_record.h"

#include <utility>

#include "base/codepage.h"
#include "host/record_reader.h"

namespace pw {
namespace {

constexpr const char* kPattern = "Pattern";

JsonInput MembersOf(PWRecord& record, const RecordForm& form) {
  return JsonInput(form.toJson(record));
}

// Texts within it become those that the organiser can have.
void Incorporate(JsonInput& value, const std::string& name, IncomingRecord& incoming) {
  if (value.is_string()) {
    const auto& text = value.get_ref<const std::string&>();
    value = CodePageToUtf8(Incorporated(text, name.c_str(), incoming));
  } else if (value.is_object()) {
    for (const auto& member : value.items()) Incorporate(member.value(), member.key(), incoming);
  } else if (value.is_array()) {
    for (JsonInput& each : value) Incorporate(each, name, incoming);
  }
}

void DropUnknown(JsonInput& told, const RecordForm& form, IncomingRecord& incoming) {
  PWRecord fresh;
  const JsonInput known = MembersOf(fresh, form);
  for (auto member = told.begin(); member != told.end();) {
    const bool isPattern = form.type == kCalendarType && member.key() == kPattern;
    if (isPattern || known.contains(member.key())) {
      ++member;
      continue;
    }
    incoming.remarks.push_back("\"" + member.key() +
                               "\" is no member of such a record, and is left out");
    member = told.erase(member);
  }
}

// A record without a pattern has no such member.
void DropEmptyPattern(JsonInput& members) {
  if (members.contains(kPattern) && members[kPattern].is_null()) members.erase(kPattern);
}

// Who names a date means that there is one.
void ImplyDate(const JsonInput& told, const char* date, const char* none, JsonInput& members) {
  if (told.contains(date) && !told.contains(none)) members[none] = false;
}

JsonInput Overlaid(JsonInput members, const JsonInput& told) {
  for (const auto& [name, value] : told.items()) members[name] = value;
  if (members.contains("NoStartDate")) {
    ImplyDate(told, "StartDate", "NoStartDate", members);
    ImplyDate(told, "DueDate", "NoDueDate", members);
  }
  DropEmptyPattern(members);
  return members;
}

// What is wrong with the members.
std::string Fill(const JsonInput& members, const RecordForm& form, PWRecord& record) {
  JsonFields fields(members);
  form.fromJson(fields, record);
  return fields.Problem();
}

}  // namespace

std::string TakeTold(JsonInput told, const RecordForm& form, IncomingRecord& incoming) {
  DropUnknown(told, form, incoming);
  for (const auto& member : told.items()) Incorporate(member.value(), member.key(), incoming);
  PWRecord fresh;
  const JsonInput whole = Overlaid(MembersOf(fresh, form), told);
  PWRecord unused;
  std::string wrong = Fill(whole, form, unused);
  if (!wrong.empty()) return wrong;
  JsonInput alone = told;
  DropEmptyPattern(alone);
  incoming.lacks = Fill(alone, form, incoming.record);
  incoming.told = std::move(told);
  return {};
}

Outcome<PWRecord> WithTold(PWRecord stored, const JsonInput& told, const RecordForm& form) {
  const JsonInput members = MembersOf(stored, form);
  const bool tellsTimes = told.contains("StartDate") || told.contains("EndDate");
  if (members.contains(kPattern) && tellsTimes && !told.contains(kPattern)) {
    return Failure{"the record there is a series, whose times come with its rule"};
  }
  PWRecord record;
  std::string wrong = Fill(Overlaid(members, told), form, record);
  if (!wrong.empty()) return Failure{std::move(wrong)};
  return record;
}

}  // namespace pw
