#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/id_index.h"
#include "base/process_wide.h"
#include "base/slot_ranks.h"
#include "calltask/day_record.h"
#include "calltask/frame_format.h"
#include "calltask/record_day.h"
#include "framework/object.h"

namespace pw {

// What tells the call file from the task file.
struct StoreKind {
  const char* fileName;
  calltask::Magics magics;
  bool madeAtSave;  // a file that is missing when it is to be saved is made

  // Of all files of the kind in the process. The first store, or the first file that is made, fixes
  // it as the registry has it; then each file that is loaded sets its own.
  ProcessWide<std::optional<calltask::FormatVersion>>& format;
};

// A call or task file, wholly in memory between `Load` and `Save`. Records are known by their index
// in one list, from 0: those of the file by ascending days, new ones behind them. A prefix is what
// the name of the file is appended to, as it is: a folder, its separator, and a stem if there is
// one.
class DayStore : public PWObject {
 public:
  static constexpr std::int32_t kDayFull = 0x5E7;

  explicit DayStore(const StoreKind& kind);
  ~DayStore() override;
  DayStore(const DayStore&) = delete;
  DayStore& operator=(const DayStore&) = delete;

  // Reads the whole file, once for each object. 0, or -1 for a file that can't be opened for
  // reading and writing, is larger than 256 MiB, or whose header, index or one of whose year tables
  // is cut short: the store then has what could be read. Days that can't be read are left out, and
  // are gone with the next save. A file with a header counts as changed. So does one that a record
  // is added to: whatever it held beyond the store's records is gone then, even if it couldn't be
  // opened before.
  std::int32_t Load(const std::string& prefix);

  // Rewrites the file if anything was changed. Says nothing of a failure: a file that can't be
  // opened or cut stays as it is, and so does one that would outgrow its 32-bit offsets.
  void Save(const std::string& prefix) const;

  std::uint32_t Count() const { return static_cast<std::uint32_t>(ranks.Count()); }
  const DayRecord& Record(std::uint32_t index) const { return *records[ranks.SlotAt(index)]; }

  calltask::FormatVersion Format() const { return **kind.format; }
  std::string IdText(std::uint32_t index) const { return Record(index).IdText(Format()); }

  // Index of the first record of that id text.
  std::optional<std::uint32_t> Find(const std::string& id);

  // Lets `change` change the record, which stays in its day.
  void Change(std::uint32_t index, const std::function<void(DayRecord&)>& change);

  // Takes the record out of its day and the list. A recurring one stays in its day, and so comes
  // back with the file.
  void Remove(std::uint32_t index);

  bool IsDirty() const { return dirty; }

 protected:
  // Files a record under a day, and adds it to the list. 0, or `kDayFull`: it is then freed. The
  // day of the key 0 is never full: a new one takes its place, and the old one's records, though
  // still in the list, won't be saved.
  std::int32_t AddToDay(std::unique_ptr<DayRecord> record, std::uint16_t key);

 private:
  using Days = std::map<std::uint16_t, std::unique_ptr<RecordDay>>;

  virtual std::unique_ptr<RecordDay> NewDay(std::uint16_t key) const = 0;

  void LoadDays(const std::vector<calltask::DayBlock>& blocks, std::size_t fileSize);
  void Append(std::unique_ptr<DayRecord> record);
  IdIndex& Ids();
  std::uint64_t DigestAt(std::uint32_t slot) const {
    return records[slot]->IdDigest(indexedFormat);
  }
  std::optional<std::string> Encode() const;

  const StoreKind& kind;
  calltask::Header header{};
  DayRecords records;  // by slot; that of a removed record stays, mostly empty
  SlotRanks ranks;
  Days days;                   // behind the records, which they still know when they go
  std::optional<IdIndex> ids;  // built on first need
  calltask::FormatVersion indexedFormat{};
  bool dirty = false;
};

// Makes an empty file. 0, or -1 if it can't be made.
std::int32_t CreateStoreFile(const StoreKind& kind, const std::string& prefix);

}  // namespace pw
