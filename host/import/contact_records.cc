#include "host/import/contact_records.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "host/formats/contact_json.h"
#include "host/formats/csv.h"
#include "host/formats/vcard.h"

namespace pw {
namespace {

constexpr const char* kContactLog = "Contact Log";

// Each run of line ends as one blank.
std::string Folded(const std::string& text) {
  std::string folded;
  for (const char c : text) {
    const bool isEnd = c == '\r' || c == '\n';
    if (isEnd && !folded.empty() && folded.back() != ' ') folded += ' ';
    if (!isEnd) folded += c;
  }
  return folded;
}

class ContactImport {
 public:
  explicit ContactImport(const std::vector<std::string>& names)
      : fields(names.begin(), names.end()) {}

  void Fill(const Contact& contact, IncomingRecord& record) const {
    record.id = contact.id;
    std::unordered_set<std::string> seen;
    for (const auto& [name, value] : contact.fields) {
      if (fields.count(name) == 0) {
        if (!value.empty()) record.remarks.push_back("there is no field \"" + name + "\" for it");
      } else if (!seen.insert(name).second) {
        if (!value.empty()) {
          record.remarks.push_back("the second \"" + name + "\" is left out");
        }
      } else {
        SetField(name, value, record);
      }
    }
  }

 private:
  static void SetField(const std::string& name, const std::string& value, IncomingRecord& record) {
    std::string text = value;
    if (name != kContactLog && value.find_first_of("\r\n") != std::string::npos) {
      text = Folded(value);
      record.remarks.push_back(name + " is in one line now");
    }
    const std::string own = Incorporated(text, name.c_str(), record);
    IncomingRecord unheard;  // a field's name is one of the cardfile's, so nothing is to be told
    record.record.SetField(Incorporated(name, "", unheard), own);
  }

  std::unordered_set<std::string> fields;
};

struct ReadCards {
  std::vector<Contact> contacts;
  std::vector<std::string> problems;
};

std::vector<std::string> TextsOf(const LineErrors& errors) {
  std::vector<std::string> texts = errors.Texts();
  if (errors.Count() > texts.size()) {
    texts.push_back("and " + std::to_string(errors.Count() - texts.size()) + " more of this kind");
  }
  return texts;
}

ReadCards Read(std::string_view text, ContactFormat format,
               const std::vector<std::string>& fieldNames) {
  if (format == ContactFormat::kJson) {
    JsonContacts read = ReadContactsJson(text);
    std::vector<std::string> problems;
    if (!read.error.empty()) problems.push_back(read.error);
    return {std::move(read.contacts), std::move(problems)};
  }
  if (format == ContactFormat::kCsv) {
    CsvFile read = ReadCsv(text);
    return {std::move(read.contacts), TextsOf(read.errors)};
  }
  VCardFile read = ReadVCards(text, fieldNames);
  return {std::move(read.contacts), TextsOf(read.errors)};
}

}  // namespace

Incoming ReadContacts(std::string_view text, ContactFormat format,
                      const std::vector<std::string>& fieldNames) {
  ReadCards read = Read(text, format, fieldNames);
  Incoming incoming;
  incoming.problems = std::move(read.problems);
  const ContactImport import(fieldNames);
  for (const Contact& contact : read.contacts) {
    IncomingRecord& record = incoming.records.emplace_back();
    record.where = "record " + std::to_string(incoming.records.size());
    import.Fill(contact, record);
  }
  return incoming;
}

}  // namespace pw
