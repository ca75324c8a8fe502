#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/formats/contact_json.h"
#include "host/formats/csv.h"
#include "host/import/contact_records.h"

// Brings anything in as contacts. What JSON gives comes back the same when it is written and read
// again; of CSV, what was written does.
namespace {

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

void CheckJson(std::string_view text) {
  const pw::JsonContacts read = pw::ReadContactsJson(text);
  const pw::JsonContacts again = pw::ReadContactsJson(pw::WriteContactsJson(read.contacts));
  Require(again.errors.Count() == 0 && again.contacts == read.contacts);
}

// Writing makes the headings unique and leaves nothing empty out, so that it settles.
void CheckCsv(std::string_view text) {
  const pw::CsvFile read = pw::ReadCsv(text);
  const std::string written = pw::WriteCsv(read.contacts);
  const pw::CsvFile again = pw::ReadCsv(written);
  if (again.errors.Count() > 0) return;  // a header beyond what is read
  Require(again.contacts.size() == read.contacts.size());
  Require(pw::WriteCsv(again.contacts) == written);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  CheckJson(text);
  CheckCsv(text);
  const std::vector<std::string> fields = {"First Name", "Last Name", "Phone", "Contact Log"};
  for (const auto format :
       {pw::ContactFormat::kJson, pw::ContactFormat::kCsv, pw::ContactFormat::kVCard}) {
    pw::ReadContacts(text, format, fields);
  }
  return 0;
}
