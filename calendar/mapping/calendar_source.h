#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "framework/source.h"

class WMCalendarStore;

// The organiser's calendar as one list of events: what takes several days, special days, timed
// events, and series. The category's location is a prefix of the files' names, down to the
// separator and a stem if there is one.
//
// What the organiser can't hold is told in the log: an event is refused, or stored with less than
// it had. An add that the organiser has no form for, of an event without length, answers 0 and
// stores nothing.
class WMCalendarSource : public PWSource {
 public:
  explicit WMCalendarSource(PWSourceManager* manager);
  ~WMCalendarSource() override;

  PWRESULT OpenSource() override;

  // Writes the files if anything was changed. Always 0.
  PWRESULT CloseSource() override;

  PWRESULT AddRecord(PWRecord& record) override;

  // Always 0 for an event that can be held, even if its new form can't be stored.
  PWRESULT UpdateRecord(PWRecord& record) override;

  // Puts the cursor on the first record.
  PWRESULT DeleteRecord() override;

  PWRESULT ReadRecord(PWRecord* record) override;
  std::uint32_t RecordCount() override;
  PWString& RecordID() override;

  // In the machine's zone. Without a record that of the last call.
  PWDateTimeStamp& RecordTimeStamp() override;

  // 0 beside an event file of version 50, and for timed events.
  std::uint32_t RecordCRC() override;

  PWRESULT FirstRecord() override;
  PWRESULT NextRecord() override;

  // Puts the cursor on the first record where it finds none.
  PWRESULT FindRecord(const char* id) override;

 private:
  bool PassesGate(PWRecord& record);
  void Warn(const std::string& message);
  void WarnOfShortenedNotes(PWRecord& record);

  std::unique_ptr<WMCalendarStore> store;  // null while closed
  std::uint32_t cursor = 0;
};
