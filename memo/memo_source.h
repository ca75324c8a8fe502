#pragma once

#include <cstdint>
#include <memory>

#include "framework/source.h"

class WMBinder;
class WMNote;

// The notes of one section of a memo binder. The category's location is the binder's stem, ";" and
// the section's name.
//
// While a source is open the cursor may come to stand on a note of another section, where a search
// that finds nothing leaves it; what is then updated or deleted is that note.
class WMMemoSource : public PWSource {
 public:
  explicit WMMemoSource(PWSourceManager* manager);
  ~WMMemoSource() override;

  PWRESULT OpenSource() override;
  PWRESULT CloseSource() override;
  PWRESULT AddRecord(PWRecord& record) override;
  PWRESULT UpdateRecord(PWRecord& record) override;
  PWRESULT DeleteRecord() override;
  PWRESULT ReadRecord(PWRecord* record) override;
  std::uint32_t RecordCount() override { return recordCount; }

  // "0" without a record.
  PWString& RecordID() override;

  // The last change, in the machine's zone. Without a record, what it was before.
  PWDateTimeStamp& RecordTimeStamp() override;

  PWRESULT FirstRecord() override;
  PWRESULT NextRecord() override;

  // Puts the cursor on the binder's first note where it finds none.
  PWRESULT FindRecord(const char* id) override;

 private:
  PWRESULT GiveUp();
  const WMNote* Current() const;
  bool IsOnRecord() const;

  std::unique_ptr<WMBinder> binder;  // null while closed
  std::uint32_t cursor = 0;          // over the notes of all sections
  std::uint32_t recordCount = 0;
};
