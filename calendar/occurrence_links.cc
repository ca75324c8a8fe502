#include "calendar/occurrence_links.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "calendar/calendar_state.h"
#include "calendar/rule_expansion.h"
#include "calendar/zone_scope.h"
#include "timeplace/zones.h"

namespace {

// Occurrences of one series that were written so shortly after each other may have different keys.
constexpr std::int64_t kSecondsToWriteOne = 20;

// Subject and notes.
using Texts = std::pair<std::string, std::string>;

// The clock's hour and minute of a start and of an end.
using Times = std::tuple<std::int32_t, std::int32_t, std::int32_t, std::int32_t>;

Texts TextsOf(const WMEventDetail& detail) {
  return {detail.subject, detail.notes};
}

Times LocalTimes(const WMEventItem& item) {
  const WMBrokenTime start = SecondsToLocal(item.Start());
  const WMBrokenTime end = SecondsToLocal(item.End());
  return {start.hour, start.min, end.hour, end.min};
}

Times TimesOf(const WMEventDetail& detail) {
  return {detail.StartHour(), detail.StartMinute(), detail.EndHour(), detail.EndMinute()};
}

// Whether the item's date may be within the series' range, whatever the zone. Saves the conversions
// where many series have the same texts. Of two moments on one date the clocks may be more than a
// day apart, when they are put back.
bool IsNear(const WMRecurringItem& series, const WMEventItem& item) {
  constexpr std::int64_t kTwoDays = std::int64_t{2} * kSecondsPerDay;
  return item.Start() >= series.rule.firstDay - kTwoDays &&
         item.Start() <= series.rule.lastDay + kTwoDays;
}

bool InstanceMatchesItem(const WMRecurringItem& series, const WMEventItem& item) {
  if (series.detail.subject != item.Subject() || series.detail.notes != item.Notes()) return false;
  const pw::calendar::ZoneScope scope(static_cast<std::int32_t>(item.Zone()));
  if (TimesOf(series.detail) != LocalTimes(item)) return false;
  return CompareLocalDates(series.rule.lastDay, item.Start()) >= 0 &&
         CompareLocalDates(item.Start(), series.rule.firstDay) >= 0;
}

// What the rule gives and has no item counts as deleted.
void MarkMissingOccurrences(WMRecurringItem& series, std::vector<std::int32_t> starts) {
  std::sort(starts.begin(), starts.end());
  series.LinkByStarts(std::move(starts));
}

class OlderFileLinker {
 public:
  OlderFileLinker(ItemList& occurrences, WMRecurringFile& series)
      : occurrences(occurrences), series(series) {
    for (std::size_t i = 0; i < series.Count(); ++i) {
      seriesByTexts[TextsOf(series.Item(i).detail)].push_back(i);
    }
  }

  void Link() {
    CollectIds();
    if (ids.size() > series.Count()) MergeLookalikeIds();
    if (!LinkOlderFileItems()) RebuildOlderFileLinks();
    ReconcileOccurrences();
  }

 private:
  // Each key of an occurrence, and the first one with it.
  void CollectIds() {
    std::unordered_set<std::int32_t> seen;
    for (std::size_t i = 0; i < occurrences.Count(); ++i) {
      const WMEventItem& item = occurrences.Item(i);
      if (!seen.insert(item.Created()).second) continue;
      ids.push_back(item.Created());
      firsts.push_back(i);
    }
  }

  // Keys whose first items look alike and that are few seconds apart become the first one of them,
  // as do all that are linked by others so. No series of an older file has a key that would come
  // before it.
  void MergeLookalikeIds() {
    const std::vector<std::size_t> heads = GroupLookalikes();
    std::unordered_map<std::int32_t, std::size_t> places;
    for (std::size_t i = 0; i < ids.size(); ++i) places.emplace(ids[i], i);
    for (std::size_t i = 0; i < occurrences.Count(); ++i) {
      const std::size_t place = places.at(occurrences.Item(i).Created());
      if (heads[place] != place) occurrences.SetCreated(i, ids[heads[place]]);
    }
    std::size_t kept = 0;
    for (std::size_t i = 0; i < ids.size(); ++i) {
      if (heads[i] != i) continue;
      ids[kept] = ids[i];
      firsts[kept++] = firsts[i];
    }
    ids.resize(kept);
    firsts.resize(kept);
  }

  // For each key the place of the first one of its group.
  std::vector<std::size_t> GroupLookalikes() const {
    std::map<std::pair<Texts, Times>, std::vector<std::size_t>> alike;
    for (std::size_t i = 0; i < ids.size(); ++i) {
      const WMEventItem& item = occurrences.Item(firsts[i]);
      alike[{{item.Subject(), item.Notes()}, LocalTimes(item)}].push_back(i);
    }
    std::vector<std::size_t> heads(ids.size());
    for (auto& [looks, places] : alike) {
      std::sort(places.begin(), places.end(),
                [&](std::size_t a, std::size_t b) { return ids[a] < ids[b]; });
      for (std::size_t begin = 0; begin < places.size();) {
        std::size_t end = begin + 1;
        while (end < places.size() && AreClose(ids[places[end - 1]], ids[places[end]])) ++end;
        const auto first = places.begin() + static_cast<std::ptrdiff_t>(begin);
        const auto last = places.begin() + static_cast<std::ptrdiff_t>(end);
        const std::size_t head = *std::min_element(first, last);
        std::for_each(first, last, [&](std::size_t place) { heads[place] = head; });
        begin = end;
      }
    }
    return heads;
  }

  static bool AreClose(std::int32_t a, std::int32_t b) {
    return std::int64_t{b} - a < kSecondsToWriteOne;
  }

  // One key for each series, where all of them fit.
  bool LinkOlderFileItems() {
    if (ids.size() == series.Count() && GiveKeys()) return true;
    for (std::size_t i = 0; i < series.Count(); ++i) series.Item(i).linked = false;
    return false;
  }

  bool GiveKeys() {
    for (std::size_t k = 0; k < ids.size(); ++k) {
      const WMEventItem& item = occurrences.Item(firsts[k]);
      const auto found = FindItemOfInstance(item);
      if (!found || series.Item(*found).linked) return false;
      GiveKey(*found, ids[k], item.Zone());
    }
    return true;
  }

  void GiveKey(std::size_t index, std::int32_t key, std::uint32_t zone) {
    series.SetKey(index, key);
    series.Item(index).linked = true;
    series.Item(index).zone = static_cast<std::int32_t>(zone);
  }

  // Each occurrence by itself.
  void RebuildOlderFileLinks() {
    std::unordered_set<std::int32_t> taken;
    for (std::size_t i = 0; i < occurrences.Count(); ++i) {
      const WMEventItem& item = occurrences.Item(i);
      const auto found = FindItemOfInstance(item);
      if (!found) continue;
      if (!series.Item(*found).linked) {
        // No item takes the key 0.
        const bool isTaken = item.Created() == 0 || taken.count(item.Created()) > 0;
        GiveKey(*found, isTaken ? NewLinkId() : item.Created(), item.Zone());
        taken.insert(series.Key(*found));
      }
      occurrences.SetCreated(i, series.Key(*found));
    }
  }

  static std::int32_t NewLinkId() {
    const auto count = static_cast<std::uint32_t>(NextSeriesKey());
    const auto now = static_cast<std::uint32_t>(UtcNowSeconds());
    return static_cast<std::int32_t>(now << 16 | (count & 0xFFFF));
  }

  static std::int32_t NextSeriesKey() {
    LastSeriesKey() = WrappingSum(LastSeriesKey(), 1);
    return LastSeriesKey();
  }

  std::optional<std::size_t> FindItemOfInstance(const WMEventItem& item) const {
    const auto alike = seriesByTexts.find({item.Subject(), item.Notes()});
    if (alike == seriesByTexts.end()) return std::nullopt;
    for (const std::size_t index : alike->second) {
      if (IsNear(series.Item(index), item) && InstanceMatchesItem(series.Item(index), item)) {
        return index;
      }
    }
    return std::nullopt;
  }

  // A series that isn't linked by now keeps all dates of its rule. What the organiser does first at
  // this place can find nothing: it looks for occurrences that fit the series and belong to none.
  // But each that fits any series has the key of one, as no key is 0.
  void ReconcileOccurrences() {
    std::vector<std::vector<std::int32_t>> dates = CollectDates();
    for (std::size_t i = 0; i < series.Count(); ++i) {
      WMRecurringItem& item = series.Item(i);
      if (!item.linked) {
        series.SetKey(i, NextSeriesKey());
        item.linked = true;
      } else if (!dates[i].empty()) {
        MarkMissingOccurrences(item, std::move(dates[i]));
      }
    }
  }

  // The starts of the occurrences of each series. Where several series have one key it is the next
  // from the one that was found last, around the end.
  std::vector<std::vector<std::int32_t>> CollectDates() {
    std::unordered_map<std::int32_t, std::vector<std::size_t>> byKey;
    for (std::size_t i = 0; i < series.Count(); ++i) byKey[series.Key(i)].push_back(i);
    std::vector<std::vector<std::int32_t>> dates(series.Count());
    std::size_t last = 0;
    for (std::size_t i = 0; i < occurrences.Count(); ++i) {
      const WMEventItem& item = occurrences.Item(i);
      const auto found = byKey.find(item.Created());
      if (found == byKey.end()) continue;
      const std::vector<std::size_t>& places = found->second;
      const auto next = std::lower_bound(places.begin(), places.end(), last);
      last = next == places.end() ? places.front() : *next;
      dates[last].push_back(item.Start());
    }
    return dates;
  }

  ItemList& occurrences;
  WMRecurringFile& series;
  std::map<Texts, std::vector<std::size_t>> seriesByTexts;
  std::vector<std::int32_t> ids;    // keys of the occurrences, in the order of their first ones
  std::vector<std::size_t> firsts;  // those occurrences
};

}  // namespace

void LinkInstancesToExceptions(ItemList& occurrences, WMRecurringFile& series) {
  using Key = std::pair<std::uint32_t, std::uint32_t>;
  // By series, each when the first changed occurrence of it comes.
  std::unordered_map<std::size_t, std::multimap<Key, WMRecurringException*>> exceptions;
  for (std::size_t i = 0; i < occurrences.Count(); ++i) {
    const WMEventItem& item = occurrences.Item(i);
    if (!item.IsChanged()) continue;
    const auto index = series.FindByKey(item.Created());
    if (!index) continue;
    const auto [known, isNew] = exceptions.try_emplace(*index);
    if (isNew) {
      for (WMRecurringException& each : series.Item(*index).exceptions) {
        known->second.emplace(Key(each.itemCreated, each.itemId), &each);
      }
    }
    const Key key(static_cast<std::uint32_t>(item.Created()),
                  static_cast<std::uint32_t>(item.Id()));
    const auto [first, last] = known->second.equal_range(key);
    std::for_each(first, last, [&](const auto& each) { each.second->instance = &item; });
  }
}

void LinkOlderFile(ItemList& occurrences, WMRecurringFile& series) {
  OlderFileLinker(occurrences, series).Link();
}
