#include "host/drive_records.h"

#include <algorithm>
#include <iterator>

namespace pw {
namespace {

constexpr const char* kContactFields = "fields";

Json ContactToJson(const PWRecord& record) {
  Json fields = Json::array();
  for (const PWRecord::Field& field : record.Fields()) {
    fields.push_back(Json::array({JsonText(field.name), JsonText(field.value.View())}));
  }
  return Json{{kContactFields, std::move(fields)}};
}

void ContactFromJson(JsonFields& fields, PWRecord& record) {
  if (!fields.Has(kContactFields)) return;
  for (const auto& [name, value] : fields.Pairs(kContactFields)) record.SetField(name, value);
}

constexpr RecordForm kForms[] = {
    {"contact", ContactToJson, ContactFromJson},
};

}  // namespace

const RecordForm* FindRecordForm(std::string_view type) {
  const auto* found = std::find_if(std::begin(kForms), std::end(kForms),
                                   [&](const RecordForm& form) { return form.type == type; });
  return found == std::end(kForms) ? nullptr : found;
}

}  // namespace pw
