#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/slot_ranks.h"
#include "calendar/recurring_format.h"
#include "calendar/recurring_item.h"
#include "platform/files.h"

// The recurring file, wholly in memory between `Load` and `Save`. Series are known by their index,
// from 0, in the order of the file, new ones behind them. All is called on the engine's one thread;
// nothing but `Load`, `Save` and the constructor, which asks the registry for the version, reaches
// out of memory.
class WMRecurringFile {
 public:
  WMRecurringFile();

  // What `Save` makes where nothing was loaded. Without a path it does nothing.
  void SetPath(const std::string& filePath) { path = filePath; }

  // Opens the file, for reading and writing, or makes an empty one of the version that the
  // calendar's files are made in, and reads all of it; instead of what was there before. Keeps it
  // open. False if it can't be opened or has no whole header, which leaves no series, and for a
  // record that can't be read, which ends them. True for a cut index, which leaves none either. A
  // file above `kLargestFile` isn't read: false, no series, and no path, so that it stays as it is.
  bool Load(const std::string& filePath);

  // Rewrites the file in its version, and makes it if it wasn't open. Says nothing of a failure: a
  // file that can't be opened stays as it is; where its header can't be written all is dropped.
  void Save();

  // Closes the file, and drops all series.
  void Close();

  pw::recurring::FormatVersion Version() const { return version; }

  // An index below the count is asked of all that take one.
  std::size_t Count() const { return ranks.Count(); }

  // `key` is to be changed by `SetKey` only, which the lookups follow.
  WMRecurringItem& Item(std::size_t index) { return *items[ranks.SlotAt(index)]; }
  const WMRecurringItem& Item(std::size_t index) const { return *items[ranks.SlotAt(index)]; }

  std::int32_t Key(std::size_t index) const { return Item(index).key; }
  void SetKey(std::size_t index, std::int32_t key);

  // When the series was last changed, in seconds since 1970 UTC. Of version 30, which doesn't know,
  // when the file was last written; 0 where that was outside of 1970 to 2020.
  std::int32_t Stamp(std::size_t index) const;

  // "Recurring:" and the key; and the first series that the number behind the colon is the key of.
  // A text without a colon is the number.
  std::string IdText(std::size_t index) const;
  std::optional<std::size_t> FindByIdText(std::string_view text) const;

  // The first series of that key. Takes O(log n), as all that follows does.
  std::optional<std::size_t> FindByKey(std::int32_t key) const;

  // The index of the series, which is the last now.
  std::size_t Append(std::unique_ptr<WMRecurringItem> item);
  void Remove(std::size_t index);

  // Takes the instances from the exceptions of all series of that key, before the items that have
  // it go.
  void ForgetInstances(std::int32_t key);

 private:
  bool Read();
  void Refuse();
  bool WriteEmpty();
  void Drop();
  std::vector<const pw::recurring::Record*> Records() const;

  std::string path;
  std::unique_ptr<pw::File> handle;
  pw::recurring::FormatVersion version;
  pw::recurring::Header header;
  std::int32_t fileStamp = 0;

  std::vector<std::unique_ptr<WMRecurringItem>> items;  // by slot; null where one was removed
  pw::SlotRanks ranks;
  std::set<std::pair<std::int32_t, std::size_t>> slotsByKey;
};
