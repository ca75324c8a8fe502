#include "host/formats/record_uid.h"

#include <algorithm>
#include <cstdint>

#include "base/text.h"
#include "host/formats/transfer_encoding.h"

namespace pw {
namespace {

constexpr std::string_view kUidStart = "pairwise-";
constexpr std::size_t kHashDigits = 16;
constexpr char kOccurrenceMark = '#';  // which no id holds once it is encoded

// FNV-1a. Only has to tell one owner's few files apart, and never to change.
std::uint64_t Hash(std::string_view text) {
  std::uint64_t hash = 0xCBF29CE484222325U;
  for (const char c : text) {
    hash ^= static_cast<unsigned char>(c);
    hash *= 0x100000001B3U;
  }
  return hash;
}

// As a UID names a file.
std::string MarkOf(std::string_view fileIdentity) {
  const std::uint64_t hash = Hash(fileIdentity);
  std::string mark;
  for (int shift = 60; shift >= 0; shift -= 4) mark += "0123456789abcdef"[hash >> shift & 0xF];
  return mark;
}

}  // namespace

std::string MakeRecordUid(std::string_view fileIdentity, std::string_view id,
                          std::size_t occurrence) {
  std::string uid = std::string(kUidStart) + MarkOf(fileIdentity) + '-' + EncodePercent(id);
  if (occurrence > 1) uid += kOccurrenceMark + std::to_string(occurrence);
  return uid;
}

bool RecordId::IsOf(std::string_view fileIdentity) const {
  return file.empty() || EqualIgnoringCase(file, MarkOf(fileIdentity));
}

RecordId IdOfRecordUid(std::string_view uid) {
  const std::size_t idStart = kUidStart.size() + kHashDigits + 1;
  if (uid.size() < idStart || uid.substr(0, kUidStart.size()) != kUidStart) return {};
  if (uid[idStart - 1] != '-') return {};
  RecordId id;
  id.file = uid.substr(kUidStart.size(), kHashDigits);
  uid.remove_prefix(idStart);
  const std::size_t mark = std::min(uid.find(kOccurrenceMark), uid.size());
  id.text = DecodePercent(uid.substr(0, mark));
  if (mark != uid.size()) {
    id.occurrence = static_cast<std::uint32_t>(std::max(ParseLong(uid.substr(mark + 1)), 0));
  }
  return id;
}

}  // namespace pw
