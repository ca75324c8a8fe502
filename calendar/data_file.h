#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "calendar/data_format.h"
#include "calendar/data_list.h"
#include "framework/object.h"

// The data file, "DATA.WMW", wholly in memory between `Load` and `Save`. Records are known by an
// index from 0: the multi-day spans in their order, and behind them the special days. All is called
// on the engine's one thread.
class WMDataFile : public PWObject {
 public:
  using Version = pw::datafile::FormatVersion;

  // Empty, of the version that the registry asks for.
  WMDataFile();
  WMDataFile(const WMDataFile&) = delete;
  WMDataFile& operator=(const WMDataFile&) = delete;

  // Reads the file, once for each object. One that can't be opened is made: from the template
  // "Holidef.dat" of the organiser's data folder, or else empty. What can't be read isn't there,
  // and is gone with the next save: all of a file that still can't be opened or is none of the two
  // versions, multi-day spans out of range. The records of a version 35 file get new keys.
  void Load(const std::string& path);

  // Rewrites the file in the version held; one without records is made anew as an empty one. False
  // if it can't be written, or opened for this object alone; in the latter case nothing has
  // changed.
  bool Save(const std::string& path);

  // Makes an empty file of the version of the calendar's files. False if it can't be made.
  static bool CreateEmpty(const std::string& path);

  // In place of that of the file that was loaded, which decides what records are known by and how
  // they are saved. Setting 50 takes a version 35 file over into the new form.
  void SetFileVersion(Version newVersion) { version = newVersion; }

  std::uint32_t MultiDayCount() const { return multiDays.Count(); }
  std::uint32_t SpecialDayCount() const { return specialDays.Count(); }
  std::uint32_t Count() const { return MultiDayCount() + SpecialDayCount(); }

  // Null for an index that is no record of that kind. Valid until the next change.
  const WMMultiDay* MultiDay(std::uint32_t index) const;
  const WMSpecialDay* SpecialDay(std::uint32_t index) const;

  // The record's time stamp in version 50, else the last write of the file as loaded, both in
  // seconds since 1970 UTC. The index must be below the count.
  std::int32_t Stamp(std::uint32_t index) const;

  // See `pw::datafile::IdText`. The index must be below the count.
  std::string IdText(std::uint32_t index) const;

  // Index of the first record of that id text.
  std::optional<std::uint32_t> Find(const std::string& id);

  // Append a record as it is, and count it in the section table, where it stays counted until a
  // save counts anew. Where the table has no entry left for it, it won't be saved; the organiser
  // never fills more than two of the ten.
  void AddMultiDay(const WMMultiDay& span);
  void AddSpecialDay(const WMSpecialDay& day);

  // False, and nothing changed, for an index that is no record of that kind.
  bool Replace(std::uint32_t index, const WMMultiDay& span);
  bool Replace(std::uint32_t index, const WMSpecialDay& day);

  // False for an index that is no record. Its section keeps its entry.
  bool Remove(std::uint32_t index);

 private:
  void Take(const WMMultiDay& span);
  void Take(const WMSpecialDay& day) { specialDays.Append(day); }

  pw::datafile::Header header{};
  pw::datafile::SectionTable table = pw::datafile::NewTable();
  Version version;
  std::int32_t fileStamp = 0;
  pw::datafile::DataList<WMMultiDay> multiDays;
  pw::datafile::DataList<WMSpecialDay> specialDays;
};
