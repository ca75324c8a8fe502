#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "cardfile/card_templates.h"

// Reads anything as the list of card templates. All templates together take no more than the list,
// and their fields are as they stand in it.
namespace {

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

void CheckFields(std::string_view fields) {
  std::size_t from = 0;
  for (const std::string& field : pw::cardfile::FieldsOf(fields)) {
    const std::size_t at = fields.find(field, from);
    Require(!field.empty() && field.find('\t') == std::string::npos);
    Require(at != std::string_view::npos);
    from = at + field.size();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const auto& each : pw::cardfile::ReadTemplates(text)) {
    Require(each.name.empty() || text.find(each.name) != std::string_view::npos);
    Require(each.fields.find('\n') == std::string_view::npos);
    CheckFields(each.fields);
  }
  return 0;
}
