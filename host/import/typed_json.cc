#include "host/import/typed_json.h"

#include <string>
#include <utility>

#include "base/codepage.h"

namespace pw {
namespace {

// Fills the record, or gives what is wrong with it.
std::string Fill(const JsonInput& object, const RecordForm& form, IncomingRecord& incoming) {
  JsonFields fields(object);
  if (fields.Has("id")) incoming.id = CodePageToUtf8(fields.Text("id"));
  if (fields.Has("category")) incoming.category = CodePageToUtf8(fields.Text("category"));
  const JsonInput& record = fields.Object("record");
  if (fields.Failed()) return fields.Problem();
  JsonFields inner(record);
  form.fromJson(inner, incoming.record);
  return inner.Problem();
}

}  // namespace

Incoming ReadTypedJson(std::string_view text, const RecordForm& form) {
  Incoming incoming;
  const JsonInput json =
      IsTooDeep(text) ? JsonInput() : JsonInput::parse(text, nullptr, false, false);
  if (!json.is_array()) {
    incoming.problems.emplace_back("this is no JSON array of records");
    return incoming;
  }
  std::size_t number = 0;
  for (const JsonInput& each : json) {
    IncomingRecord record;
    record.where = "record " + std::to_string(++number);
    const std::string wrong = Fill(each, form, record);
    if (wrong.empty()) {
      incoming.records.push_back(std::move(record));
    } else {
      incoming.problems.push_back(record.where + ": " + wrong + ", and is left out");
    }
  }
  return incoming;
}

}  // namespace pw
