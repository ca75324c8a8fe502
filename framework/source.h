#pragma once

#include <cstdint>
#include <memory>

#include "framework/category.h"
#include "framework/field_map.h"
#include "framework/record.h"
#include "framework/result.h"
#include "framework/source_manager.h"
#include "framework/values.h"

// A cursor over the records of one category of one data type.
//
// The engine sets `Category`, calls `Open` once, walks (`FirstRecord`, then for each record
// `RecordID`, `RecordTimeStamp`, `RecordCRC`, `ReadRecord`, `NextRecord`), changes (`FindRecord`
// before `UpdateRecord` or `DeleteRecord`; `AddRecord`, whose record is the current one then),
// calls `CloseSource`, and deletes the source. All on one thread. The texts and stamps returned by
// reference are statics of the source's class, good until the next such call.
class PWSource : public PWObject {
 public:
  PWSource(PWSourceManager* manager, std::uint32_t kind) : Manager(manager), Kind(kind) {}
  ~PWSource() override;

  // Opens `Category->Location`, and asks a running organiser to let go of it. 0; 7 when a file that
  // is needed is missing (contact, memo); 1 when it can't be read or the organiser won't.
  virtual PWRESULT OpenSource() = 0;

  // The engine's entry; its argument has no meaning here.
  virtual PWRESULT Open(std::uint32_t word);

  // Writes what was changed, lets the store go and tells the organiser. 0 even where a file could
  // not be written; 1 where the clocks can no longer be read (timezone).
  virtual PWRESULT CloseSource() = 0;

  // These two give 1 for a record that the organiser can't hold; the record remains the engine's.
  // `UpdateRecord` and the two after it are of the current record, and give 1 where there is none.
  virtual PWRESULT AddRecord(PWRecord& record) = 0;
  virtual PWRESULT UpdateRecord(PWRecord& record) = 0;
  virtual PWRESULT DeleteRecord() = 0;

  // Fills `record`, which is the engine's.
  virtual PWRESULT ReadRecord(PWRecord* record) = 0;

  virtual std::uint32_t RecordCount() = 0;
  virtual PWRESULT ReservedStatus() { return kResultNotImplemented; }

  // Of the current record: what `FindRecord` takes, and when it was last changed.
  virtual PWString& RecordID() = 0;
  virtual PWDateTimeStamp& RecordTimeStamp() = 0;

  // 0 where the records have a time stamp to tell a change by.
  virtual std::uint32_t RecordCRC() { return 0; }

  // `crc` with the value folded in.
  virtual std::uint32_t GenerateCRC(std::uint32_t crc, const PWDateTimeStamp& stamp);
  virtual std::uint32_t GenerateCRC(std::uint32_t crc, const PWString& text);
  virtual std::uint32_t GenerateCRC(std::uint32_t crc, const void* data, std::uint32_t size);

  // 0 if there is such a record, else 1.
  virtual PWRESULT FirstRecord() = 0;
  virtual PWRESULT NextRecord() = 0;
  virtual PWRESULT FindRecord(const char* id) = 0;

  virtual PWRESULT ReservedOperation(std::uint32_t /*a*/, std::uint32_t /*b*/) {
    return kResultNotImplemented;
  }
  virtual bool ReservedQuery(std::uint32_t /*word*/) { return false; }

  // The columns of a contact, by the place of their names in the cardfile; `FindField` tells letter
  // case apart and gives -1 for an unknown name. Other sources have none.
  virtual PWRESULT GetField(std::int32_t /*index*/, PWField& /*out*/) { return kResultFailed; }
  virtual PWRESULT SetField(std::int32_t /*index*/, PWField& /*value*/) { return kResultFailed; }
  virtual std::int32_t FindField(const char* /*name*/) { return -1; }

  PWSourceManager* Manager;              // the engine's
  PWSourceCategory* Category = nullptr;  // the engine's
  std::uint32_t Kind;

 protected:
  // Carry the mapped fields of a contact from the record into the source's columns, and back. A
  // field that the record doesn't have, or the source has no column for, is passed over. Without a
  // map nothing is carried, and the result is 1.
  PWRESULT ApplyMapToSource(PWRecord& record);
  PWRESULT ApplyMapFromSource(PWRecord* record);

 private:
  // The map chosen for this category, or else the identity over the category's field names; null
  // where these can't be had.
  const PWFieldMap* FieldMap();

  std::unique_ptr<PWFieldMap> fieldMap;  // found on first need
};
