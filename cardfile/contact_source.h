#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "framework/source.h"

class WMCardFile;

// One cardfile as records of its own fields, which the engine's field map connects to its own. The
// source knows nothing of what a field means; it holds the values of the current card, one for each
// field.
class WMContactSource : public PWSource {
 public:
  explicit WMContactSource(PWSourceManager* manager);
  ~WMContactSource() override;

  PWRESULT OpenSource() override;
  PWRESULT CloseSource() override;
  PWRESULT AddRecord(PWRecord& record) override;
  PWRESULT UpdateRecord(PWRecord& record) override;
  PWRESULT DeleteRecord() override;
  PWRESULT ReadRecord(PWRecord* record) override;
  std::uint32_t RecordCount() override;
  PWString& RecordID() override;
  PWDateTimeStamp& RecordTimeStamp() override;
  PWRESULT FirstRecord() override;
  PWRESULT NextRecord() override;
  PWRESULT FindRecord(const char* id) override;
  PWRESULT GetField(std::int32_t index, PWField& out) override;
  PWRESULT SetField(std::int32_t index, PWField& value) override;
  std::int32_t FindField(const char* name) override;

 private:
  bool OnCard() const;
  void DecodeCurrent();
  bool HasValue(std::int32_t index) const;

  std::vector<std::string> fieldNames;
  std::unordered_map<std::string, std::int32_t> fieldIndex;  // first field of each name
  std::vector<std::string> values;
  std::unique_ptr<WMCardFile> file;  // null while closed
  std::uint32_t cursor = 0;
  bool placed = false;            // whether the cursor was put on a card since the open
  bool valuesAreCurrent = false;  // whether the values are those of the card under the cursor
};
