#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "framework/source.h"

class WMCityIndex;
struct WMClock;

// One of the organiser's clocks, as the engine gets it.
struct WMTimezoneEntry : public PWObject {
  PWRecord record;         // read and written through a `PWTimezoneRecord`
  std::int32_t index = 0;  // its place in the file, and its id
  std::string label;       // the clock's own text, which the engine doesn't get
};

// The organiser's eight clocks. None is added or deleted, and none is moved to another city: what
// an update carries over is which of them is the home clock and which the active one. A close
// writes exactly one of each.
//
// While an organiser runs that doesn't let go of its files, the clocks can only be read.
class WMTimezoneSource : public PWSource {
 public:
  explicit WMTimezoneSource(PWSourceManager* manager);
  ~WMTimezoneSource() override;

  PWRESULT OpenSource() override;
  PWRESULT CloseSource() override;
  PWRESULT AddRecord(PWRecord& /*record*/) override { return kResultFailed; }
  PWRESULT UpdateRecord(PWRecord& record) override;
  PWRESULT DeleteRecord() override { return kResultFailed; }
  PWRESULT ReadRecord(PWRecord* record) override;
  std::uint32_t RecordCount() override;
  PWString& RecordID() override;
  PWDateTimeStamp& RecordTimeStamp() override;

  // The same for all records, so that a change of one shows on every one.
  std::uint32_t RecordCRC() override;

  PWRESULT FirstRecord() override;
  PWRESULT NextRecord() override;
  PWRESULT FindRecord(const char* id) override;

 private:
  std::optional<std::string> FindClocks();
  void AskOrganiser();
  PWRESULT GiveUp();
  bool AddEntry(const WMClock& clock);
  void MakeExclusive(WMTimezoneEntry& chosen);
  void SettleFlags();
  WMTimezoneEntry* Current();

  std::unique_ptr<WMCityIndex> cities;  // null while closed
  std::string clocksPath;
  std::vector<std::unique_ptr<WMTimezoneEntry>> entries;  // in the file's order
  std::optional<std::size_t> current;
  bool readOnly = false;
};
