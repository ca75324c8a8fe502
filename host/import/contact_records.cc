#include "host/import/contact_records.h"

#include <algorithm>
#include <cstddef>
#include <unordered_set>
#include <utility>

#include "host/formats/contact_json.h"
#include "host/formats/csv.h"
#include "host/formats/vcard.h"
#include "host/import/headings.h"

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

// The fields that may hold line breaks: the contact log, and of those with names of their own the
// last one, which ends with the card's text and not with a line. A name means the first field that
// has it.
std::unordered_set<std::string> FieldsOfLines(const std::vector<std::string>& names) {
  const bool hasLog = !names.empty() && names.back() == kContactLog;
  const std::size_t beside = hasLog ? 2 : 1;
  const std::size_t last = names.size() - std::min(beside, names.size());
  std::unordered_set<std::string> fields;
  for (std::size_t i = last; i < names.size(); ++i) {
    const auto first = std::find(names.begin(), names.end(), names[i]);
    if (first - names.begin() == static_cast<std::ptrdiff_t>(i)) fields.insert(names[i]);
  }
  return fields;
}

class ContactImport {
 public:
  explicit ContactImport(const std::vector<std::string>& names)
      : fields(names.begin(), names.end()), fieldsOfLines(FieldsOfLines(names)) {}

  void Fill(const Contact& contact, IncomingRecord& record) const {
    std::unordered_set<std::string_view> seen;
    for (const auto& [name, value] : contact.fields) {
      if (fields.count(name) == 0) {
        if (!value.empty()) record.remarks.push_back("there is no field \"" + name + "\" for it");
      } else if (!seen.insert(name).second) {
        if (!value.empty()) {
          record.remarks.push_back("the second \"" + name + "\" is left out");
        }
      } else if (!value.empty() || !contact.id.empty()) {
        // An empty text matters only to a card that is there.
        SetField(name, value, record);
      }
    }
  }

 private:
  void SetField(const std::string& name, const std::string& value, IncomingRecord& record) const {
    std::string text = value;
    if (fieldsOfLines.count(name) == 0 && value.find_first_of("\r\n") != std::string::npos) {
      text = Folded(value);
      record.remarks.push_back(name + " is in one line now");
    }
    const std::string own = Incorporated(text, name.c_str(), record);
    IncomingRecord unheard;  // a field's name is one of the cardfile's, so nothing is to be told
    record.record.SetField(Incorporated(name, "", unheard), own);
  }

  std::unordered_set<std::string> fields;
  std::unordered_set<std::string> fieldsOfLines;
};

struct ReadCards {
  std::vector<Contact> contacts;
  std::vector<RecordId> ids;  // of each, where the file tells more than the contact does
  ContactRemarks remarks;
  std::vector<std::string> problems;
};

ReadCards ReadRows(std::string_view text, const std::vector<std::string>& fieldNames) {
  CsvFile read = ReadCsv(text, kMostContacts);
  const std::string unknown = WhyNoneKnown(read.names, fieldNames);
  if (!unknown.empty()) return {{}, {}, {}, {unknown}};
  return {std::move(read.contacts), {}, {}, read.errors.Told()};
}

ReadCards Read(std::string_view text, ContactFormat format,
               const std::vector<std::string>& fieldNames) {
  if (format == ContactFormat::kCsv) return ReadRows(text, fieldNames);
  if (format == ContactFormat::kJson) {
    JsonContacts read = ReadContactsJson(text);
    return {std::move(read.contacts), {}, std::move(read.remarks), read.errors.Told()};
  }
  VCardFile read = ReadVCards(text, fieldNames);
  return {std::move(read.contacts), std::move(read.ids), std::move(read.remarks),
          read.errors.Told()};
}

}  // namespace

Incoming ReadContacts(std::string_view text, ContactFormat format,
                      const std::vector<std::string>& fieldNames) {
  ReadCards read = Read(text, format, fieldNames);
  Incoming incoming;
  incoming.problems = std::move(read.problems);
  const ContactImport import(fieldNames);
  for (std::size_t i = 0; i < read.contacts.size(); ++i) {
    // Each goes once it is taken, so that a long file isn't in memory twice.
    const Contact contact = std::move(read.contacts[i]);
    IncomingRecord& record = incoming.records.emplace_back();
    record.where = "record " + std::to_string(i + 1);
    record.id.text = contact.id;
    if (!read.ids.empty()) record.id = std::move(read.ids[i]);
    const auto remarks = read.remarks.find(i);
    if (remarks != read.remarks.end()) record.remarks = std::move(remarks->second);
    import.Fill(contact, record);
  }
  return incoming;
}

}  // namespace pw
