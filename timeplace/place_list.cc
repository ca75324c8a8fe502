#include "timeplace/place_list.h"

#include <algorithm>

#include "base/cursor.h"
#include "base/text.h"
#include "platform/platform.h"
#include "plugin/string_table.h"
#include "timeplace/software_value.h"

namespace {

constexpr std::size_t kEntrySize = 64;
constexpr std::size_t kLongestPlace = kEntrySize - 1;

bool ComesBefore(const std::string& a, const std::string& b) {
  return pw::CompareIgnoringCase(a, b) < 0;
}

}  // namespace

bool WMPlaceList::Load() {
  places.clear();
  inOrder = true;
  path.clear();
  const auto folder = pw::OrganiserDataFolder();
  if (!folder) return false;
  path = pw::PathInFolder(*folder, LoadString(strings::kPlaceListFile).View());
  return ReadFile() || Save();
}

// False if the file is to be replaced.
bool WMPlaceList::ReadFile() {
  const auto file =
      pw::CurrentPlatform().files->Open(path, pw::OpenMode::kRead, pw::Sharing::kReadWrite);
  if (file == nullptr) return false;
  const PWString magic = LoadString(strings::kPlaceListMagic);
  if (file->Read(magic.View().size()) != magic.View()) return false;

  const std::string countBytes = file->Read(sizeof(std::uint32_t));
  const std::uint64_t count = pw::ByteReader(countBytes).U32();
  const std::string entries = file->Read(static_cast<std::size_t>(count * kEntrySize));
  pw::ByteReader in(entries);
  places.reserve(entries.size() / kEntrySize);
  while (in.Remaining() >= kEntrySize) places.emplace_back(pw::UpToZero(in.Take(kEntrySize)));
  inOrder = std::is_sorted(places.begin(), places.end(), ComesBefore);
  return true;
}

bool WMPlaceList::Save() const {
  if (path.empty()) return false;
  pw::ByteWriter out;
  out.Bytes(LoadString(strings::kPlaceListMagic).View());
  out.U32(static_cast<std::uint32_t>(places.size()));
  out.Reserve(out.Size() + places.size() * kEntrySize);
  for (const std::string& place : places) {
    out.Padded(std::string_view(place).substr(0, kLongestPlace), kEntrySize);
  }
  const auto file =
      pw::CurrentPlatform().files->Open(path, pw::OpenMode::kCreateAlways, pw::Sharing::kReadWrite);
  return file != nullptr && file->Write(out.Written());
}

void WMPlaceList::Add(std::string_view text) {
  std::string place(pw::UpToZero(text).substr(0, kLongestPlace));
  const Position position = Locate(place);
  if (position.taken) return;
  places.insert(places.begin() + static_cast<std::ptrdiff_t>(position.index), std::move(place));
}

// The place of the first equal entry, or else of the first greater one. A list out of order is
// walked as the organiser walks it: it goes where the organiser would put it.
WMPlaceList::Position WMPlaceList::Locate(const std::string& text) const {
  const auto found =
      inOrder ? std::lower_bound(places.begin(), places.end(), text, ComesBefore)
              : std::find_if(places.begin(), places.end(),
                             [&](const std::string& place) { return !ComesBefore(place, text); });
  const bool taken = found != places.end() && !ComesBefore(text, *found);
  return {static_cast<std::size_t>(found - places.begin()), taken};
}
