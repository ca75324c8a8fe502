#include "host/import/typed_json.h"

#include <optional>
#include <string>
#include <utility>

#include "base/codepage.h"
#include "host/formats/line_errors.h"
#include "host/import/told_record.h"

namespace pw {
namespace {

constexpr const char* kLeftOut = ", and is left out";

// Nothing where the text is no JSON, which is reported.
std::optional<JsonInput> Parse(std::string_view text, LineErrors& errors) {
  if (IsTooDeep(text)) {
    errors.Add("brackets stand deeper in each other than any record has them");
    return std::nullopt;
  }
  try {
    return JsonInput::parse(text);
  } catch (const JsonInput::parse_error& error) {
    errors.Add(LineOf(text, error.byte), "no JSON");
    return std::nullopt;
  }
}

void RemarkUnknown(const JsonInput& object, IncomingRecord& incoming) {
  for (const auto& member : object.items()) {
    const std::string& name = member.key();
    if (name == "id" || name == "category" || name == "record" || name == "changed") continue;
    incoming.remarks.push_back("\"" + name + "\" isn't known beside a record, and is left out");
  }
}

// Fills the record, or gives what is wrong with it.
std::string Fill(const JsonInput& object, const RecordForm& form, IncomingRecord& incoming) {
  JsonFields fields(object);
  if (fields.Has("id")) incoming.id.text = CodePageToUtf8(fields.Text("id"));
  if (fields.Has("category")) incoming.category = CodePageToUtf8(fields.Text("category"));
  const JsonInput& record = fields.Object("record");
  if (fields.Failed()) return fields.Problem();
  RemarkUnknown(object, incoming);
  return TakeTold(record, form, incoming);
}

}  // namespace

Incoming ReadTypedJson(std::string_view text, const RecordForm& form) {
  Incoming incoming;
  LineErrors errors;
  JsonInput json = Parse(text, errors).value_or(JsonInput::array());
  if (!json.is_array()) {
    errors.Add("this is no JSON array of records");
    json = JsonInput::array();
  }
  std::size_t number = 0;
  for (const JsonInput& each : json) {
    IncomingRecord record;
    record.where = "record " + std::to_string(++number);
    const std::string wrong = Fill(each, form, record);
    if (wrong.empty()) {
      incoming.records.push_back(std::move(record));
    } else {
      errors.Add(record.where + ": " + wrong + kLeftOut);
    }
  }
  incoming.problems = errors.Told();
  return incoming;
}

}  // namespace pw
