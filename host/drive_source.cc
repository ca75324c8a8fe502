// The calls of a drive that work on the open source.
#include <memory>
#include <utility>

#include "base/codepage.h"
#include "host/drive.h"

namespace pw {
namespace {

constexpr const char* kResult = "result";

}  // namespace

void Drive::Open(JsonFields& line, Json& answer) {
  const std::string type = line.Text("type");
  // The clocks have no categories, and so no location.
  const bool placeless = type == "timezone";
  const std::string location = placeless ? std::string() : line.Text("location");
  if (line.Failed()) return;
  // The source looks at its category to its end, so the category goes after it.
  auto place = std::make_unique<PWSourceCategory>();
  place->Location = location;
  std::unique_ptr<PWSource> opened(objects.manager.CreateSource(type.c_str()));
  if (opened == nullptr) {
    line.Fail("there is no source for type \"" + CodePageToUtf8(type) + "\"");
    return;
  }
  opened->Category = place.get();
  const PWRESULT result = opened->Open(0);
  answer[kResult] = result;
  if (result != kResultOk) return;
  category = std::move(place);
  source = std::move(opened);
  sourceType = type;
}

void Drive::Close(JsonFields& /*line*/, Json& answer) {
  answer[kResult] = source->CloseSource();
  source.reset();
  category.reset();
}

void Drive::Count(JsonFields& /*line*/, Json& answer) {
  answer["count"] = source->RecordCount();
}

void Drive::First(JsonFields& /*line*/, Json& answer) {
  answer[kResult] = source->FirstRecord();
}

void Drive::Next(JsonFields& /*line*/, Json& answer) {
  answer[kResult] = source->NextRecord();
}

void Drive::Find(JsonFields& line, Json& answer) {
  const std::string id = line.Text("id");
  if (!line.Failed()) answer[kResult] = source->FindRecord(id.c_str());
}

void Drive::Id(JsonFields& /*line*/, Json& answer) {
  answer["id"] = JsonText(source->RecordID().View());
}

void Drive::Stamp(JsonFields& /*line*/, Json& answer) {
  answer["stamp"] = StampText(source->RecordTimeStamp());
}

void Drive::Crc(JsonFields& /*line*/, Json& answer) {
  answer["crc"] = source->RecordCRC();
}

void Drive::Read(JsonFields& line, Json& answer) {
  const RecordForm* form = Form(line);
  if (form == nullptr) return;
  PWRecord record;
  const PWRESULT result = source->ReadRecord(&record);
  answer[kResult] = result;
  if (result == kResultOk) answer["record"] = form->toJson(record);
}

void Drive::Add(JsonFields& line, Json& answer) {
  PWRecord record;
  ReadRecord(line, record);
  if (line.Failed()) return;
  const std::uint32_t before = source->RecordCount();
  const PWRESULT result = source->AddRecord(record);
  answer[kResult] = result;
  // A source may answer 0 although it has no form for the record.
  if (result == kResultOk && source->RecordCount() == before) answer["stored"] = false;
}

void Drive::Update(JsonFields& line, Json& answer) {
  PWRecord record;
  ReadRecord(line, record);
  if (!line.Failed()) answer[kResult] = source->UpdateRecord(record);
}

void Drive::Delete(JsonFields& /*line*/, Json& answer) {
  answer[kResult] = source->DeleteRecord();
}

void Drive::FindField(JsonFields& line, Json& answer) {
  const std::string name = line.Text("name");
  if (!line.Failed()) answer["index"] = source->FindField(name.c_str());
}

void Drive::GetField(JsonFields& line, Json& answer) {
  const std::int32_t index = line.Signed("index");
  if (line.Failed()) return;
  PWField field;
  answer[kResult] = source->GetField(index, field);
  answer["text"] = JsonText(field.text.View());
}

void Drive::SetField(JsonFields& line, Json& answer) {
  const std::int32_t index = line.Signed("index");
  PWField field(line.Text("text"));
  if (!line.Failed()) answer[kResult] = source->SetField(index, field);
}

// By the first of the three kinds of data that the line has.
void Drive::GenerateCrc(JsonFields& line, Json& answer) {
  const std::uint32_t crc = line.Unsigned("crc");
  if (line.Has("stamp")) {
    const PWDateTimeStamp stamp = line.Stamp("stamp");
    if (!line.Failed()) answer["crc"] = source->GenerateCRC(crc, stamp);
    return;
  }
  if (line.Has("text")) {
    const PWString text(line.Text("text"));
    if (!line.Failed()) answer["crc"] = source->GenerateCRC(crc, text);
    return;
  }
  const std::string bytes = line.Bytes("bytes");
  if (line.Failed()) return;
  answer["crc"] = source->GenerateCRC(crc, bytes.data(), static_cast<std::uint32_t>(bytes.size()));
}

const RecordForm* Drive::Form(JsonFields& line) const {
  const RecordForm* form = FindRecordForm(sourceType);
  if (form == nullptr) line.Fail("records of type \"" + sourceType + "\" can't be passed");
  return form;
}

void Drive::ReadRecord(JsonFields& line, PWRecord& record) const {
  const RecordForm* form = Form(line);
  const JsonInput& object = line.Object("record");
  if (line.Failed()) return;
  JsonFields fields(object);
  form->fromJson(fields, record);
  if (fields.Failed()) line.Fail(fields.Problem());
}

}  // namespace pw
