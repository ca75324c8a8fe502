#include "timeplace/city_index.h"

#include "platform/platform.h"
#include "plugin/string_table.h"

namespace city = pw::city;

namespace {

void ShowMissingFile(const std::string& path) {
  const std::string text = LoadString(strings::kCannotFindFile).Str() + path +
                           LoadString(strings::kWhichIsRequired).Str();
  pw::CurrentPlatform().dialogs->ShowMessage(pw::kNoWindow, LoadString(strings::kWarning).Str(),
                                             text, pw::kBoxOk);
}

}  // namespace

WMCityIndex::WMCityIndex(const std::string& path) {
  pw::Files& files = *pw::CurrentPlatform().files;
  if (!files.Exists(path)) {
    ShowMissingFile(path);
    return;
  }
  file = files.Open(path, pw::OpenMode::kRead, pw::Sharing::kReadWrite);
  if (file != nullptr) LoadNodes();
}

void WMCityIndex::LoadNodes() {
  const std::string bytes = file->Read(city::NodeOffset(UINT16_MAX) + city::kNodeSize);
  count = city::NodeCount(bytes.size());
  nodes.reserve(count);
  pw::ByteReader in(bytes);
  const city::Header header = city::DecodeHeader(in);
  while (in.Remaining() >= city::kNodeSize) nodes.push_back(city::DecodeNode(in));
  root = header.root;
  // A root without a node is no current one that could be written.
  current = root;
  Select(root);
}

bool WMCityIndex::Select(std::uint32_t number) {
  if (!HasNode(number)) return false;
  current = static_cast<std::uint16_t>(number);
  buffer = nodes[number - 1];
  return true;
}

const WMCityRecord* WMCityIndex::Read(std::uint32_t number) {
  return Select(number) && !IsDeleted() ? &buffer.record : nullptr;
}

const WMCityRecord* WMCityIndex::Find(std::string_view key) {
  const std::uint16_t before = current;
  std::uint16_t next = root;
  for (std::size_t passed = 0; passed < nodes.size() && Select(next); ++passed) {
    const std::int32_t order = Compare(key, Key(buffer.record));
    if (order == 0) return IsDeleted() ? nullptr : &buffer.record;
    next = order < 0 ? buffer.left : buffer.right;
  }
  current = before;
  Select(before);
  return nullptr;
}

bool WMCityIndex::FindByName(std::string_view name, WMCityRecord& out) {
  for (std::uint32_t number = 1; number <= count; ++number) {
    const WMCityRecord* record = Read(number);
    if (record == nullptr || record->Name() != name) continue;
    out = *record;
    return true;
  }
  return false;
}

bool WMCityIndex::FindByZone(std::uint8_t zone, WMCityRecord& out) {
  for (std::uint32_t number = 1; number <= count; ++number) {
    const WMCityRecord* record = Read(number);
    if (record == nullptr || record->zone != zone) continue;
    out = *record;
    return true;
  }
  return false;
}

bool WMCityIndex::Write() {
  if (!HasNode(current) || !file->Seek(city::NodeOffset(current))) return false;
  pw::ByteWriter out;
  city::EncodeNode(out, buffer);
  if (!file->Write(out.Written())) return false;
  nodes[current - 1U] = buffer;
  return true;
}

void WMCityIndex::Replace(const WMCityRecord* record) {
  if (record != nullptr) buffer.record = *record;
}

bool WMCityIndex::DeleteKey(std::string_view key) {
  return Find(key) != nullptr && DeleteCurrent();
}

bool WMCityIndex::Delete(std::uint32_t number) {
  return Read(number) != nullptr && DeleteCurrent();
}

bool WMCityIndex::DeleteCurrent() {
  buffer.record.deleted = 1;
  return Write();
}

std::int32_t WMCityIndex::Compare(std::string_view a, std::string_view b) const {
  const int order = a.compare(b);
  return (order > 0 ? 1 : 0) - (order < 0 ? 1 : 0);
}
