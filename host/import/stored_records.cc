#include "host/import/stored_records.h"

#include <cstddef>
#include <utility>

#include "base/codepage.h"
#include "base/text.h"
#include "framework/timezone_record.h"

namespace pw {
namespace {

constexpr const char* kPlaceMembers[] = {"City", "State", "Country"};

}  // namespace

StoredRecords::StoredRecords(PWSource& source, std::string fileIdentity)
    : fileIdentity(std::move(fileIdentity)) {
  for (PWRESULT at = source.FirstRecord(); at == kResultOk; at = source.NextRecord()) {
    ids.emplace(source.RecordID().Str(), false);
  }
}

StoredRecords StoredRecords::OfClocks(PWSource& source) {
  StoredRecords stored(source, {});
  stored.areClocks = true;
  for (PWRESULT at = source.FirstRecord(); at == kResultOk; at = source.NextRecord()) {
    PWRecord record;
    source.ReadRecord(&record);
    const PWTimezoneRecord clock(&record);
    stored.places.push_back({clock.City().Str(), clock.State().Str(), clock.Country().Str()});
  }
  return stored;
}

StoredRecords::Found StoredRecords::Find(const IncomingRecord& incoming) {
  if (areClocks) {
    const Found found = FindClock(incoming);
    return found.match == Match::kStored ? Take(found.text) : found;
  }
  const std::string id = Utf8ToCodePageLossy(incoming.id.text);
  if (id.empty()) return {};
  if (!incoming.id.IsOf(fileIdentity)) {
    return {Match::kRefused, "its UID is of another file; without --update it is added"};
  }
  if (ids.count(id) == 0) return {};
  if (incoming.id.occurrence != 1) {
    return {Match::kRefused, "several records have its id, and the first one alone can be found"};
  }
  return Take(id);
}

StoredRecords::Found StoredRecords::Take(const std::string& id) {
  bool& wasFound = ids[id];
  if (wasFound) return {Match::kRefused, "the record with its id was changed by one before"};
  if (givenOut.count(id) != 0) {
    return {Match::kRefused, "a record before has taken its id"};
  }
  wasFound = true;
  return {Match::kStored, id};
}

// By its place where the file tells that, as the clock's number says less: the one of its id, or
// else the first one there.
StoredRecords::Found StoredRecords::FindClock(const IncomingRecord& incoming) const {
  const std::string& id = incoming.id.text;
  if (!incoming.told.contains(kPlaceMembers[0])) {
    if (ids.count(id) != 0) return {Match::kStored, id};
    return {Match::kRefused, "it names no city, and its id is none of the eight clocks'"};
  }
  const auto isThere = [&](const Place& place) {
    for (std::size_t i = 0; i < place.size(); ++i) {
      if (!incoming.told.contains(kPlaceMembers[i])) continue;
      const std::string told =
          Utf8ToCodePageLossy(incoming.told[kPlaceMembers[i]].get<std::string>());
      if (!EqualIgnoringCase(told, place[i])) return false;
    }
    return true;
  };
  Found found{Match::kRefused, "none of the eight clocks is of its place"};
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (!isThere(places[i])) continue;
    const std::string number = std::to_string(i);
    if (found.match != Match::kStored || number == id) found = {Match::kStored, number};
  }
  return found;
}

}  // namespace pw
