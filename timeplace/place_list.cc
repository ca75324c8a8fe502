#include "timeplace/place_list.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/text.h"
#include "platform/whole_file.h"
#include "plugin/string_table.h"
#include "timeplace/place_format.h"
#include "timeplace/software_value.h"

namespace {

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
  const auto bytes = pw::ReadWholeFile(path, UINT64_MAX);
  if (!bytes) return false;
  pw::places::PlaceFile read = pw::places::Decode(*bytes);
  if (!read.hasMagic) return false;
  places = std::move(read.places);
  inOrder = std::is_sorted(places.begin(), places.end(), ComesBefore);
  return true;
}

bool WMPlaceList::Save() const {
  return !path.empty() && pw::MakeFile(path, pw::places::Encode(places));
}

void WMPlaceList::Add(std::string_view text) {
  std::string place(pw::UpToZero(text).substr(0, pw::places::kLongestPlace));
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
