#include "host/contact_reader.h"

#include <utility>

#include "base/codepage.h"
#include "host/json_fields.h"

namespace pw {

Outcome<OpenedSource> OpenForReading(EngineRun& run, const std::string& type,
                                     const PWSourceCategory& category) {
  OpenedSource opened;
  opened.category = std::make_unique<PWSourceCategory>(category);
  opened.source.reset(run.Manager().CreateSource(type.c_str()));
  if (opened.source == nullptr) return Failure{"records of type '" + type + "' aren't offered"};
  opened.source->Category = opened.category.get();
  const PWRESULT result = opened.source->Open(0);
  if (result == kResultOk) return opened;
  const std::string file = run.NativePathOf(category.Location.Str());
  return Failure{file +
                 (result == kResultFileMissing ? ": not there" : ": damaged, or unreadable")};
}

std::optional<Contact> ReadContact(PWSource& source) {
  Contact contact;
  contact.id = CodePageToUtf8(source.RecordID().View());
  const PWDateTimeStamp stamp = source.RecordTimeStamp();
  if (!(stamp == PWDateTimeStamp())) contact.stamp = StampText(stamp);
  PWRecord record;
  if (source.ReadRecord(&record) != kResultOk) return {};
  for (const PWRecord::Field& field : record.Fields()) {
    contact.fields.emplace_back(CodePageToUtf8(field.name), CodePageToUtf8(field.value.View()));
  }
  return contact;
}

Outcome<CategoryContacts> ReadContacts(EngineRun& run, const PWSourceCategory& category) {
  auto opened = OpenForReading(run, kContactType, category);
  if (!opened) return opened.Why();
  CategoryContacts read;
  read.name = CodePageToUtf8(category.Name.View());
  read.location = CodePageToUtf8(category.Location.View());
  PWStringVector names;
  run.Manager().CategoryFieldNames(kContactType, category.Location, names);
  for (std::uint32_t i = 0; i < names.Count(); ++i) {
    read.fieldNames.push_back(CodePageToUtf8(names.At(i)->View()));
  }
  PWSource& source = *opened->source;
  for (PWRESULT at = source.FirstRecord(); at == kResultOk; at = source.NextRecord()) {
    auto contact = ReadContact(source);
    if (contact) read.contacts.push_back(std::move(*contact));
    if (!contact) ++read.unreadable;
  }
  return read;
}

}  // namespace pw
