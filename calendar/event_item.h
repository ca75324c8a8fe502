#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "calendar/event_format.h"

// An item of the event file: an event of its own, or an occurrence of a series. All is called on
// the engine's one thread.
class WMEventItem {
 public:
  // Made and changed now, with a new id, in the home zone.
  WMEventItem();

  // Reads an item over this one.
  std::optional<pw::events::Damage> Parse(pw::ByteReader& in) {
    return pw::events::DecodeItem(in, header, detail);
  }
  void Encode(pw::ByteWriter& out) const { pw::events::EncodeItem(out, header, detail); }
  std::size_t EncodedSize() const { return pw::events::EncodedSize(header, detail); }

  std::int32_t Start() const { return header.start; }
  std::int32_t End() const { return header.end; }
  std::int32_t Created() const { return header.created; }
  std::int32_t Id() const { return header.id; }
  std::uint32_t Zone() const { return header.zone; }
  std::int32_t Modified() const { return header.modified; }
  bool IsOccurrence() const { return detail.IsOccurrence(); }
  bool IsChanged() const;  // an occurrence that is no longer as its series has it
  const std::string& Subject() const { return detail.subject; }
  const std::string& Notes() const { return detail.notes; }

  std::int32_t Sensitivity() const;

  // Takes 0 normal, 1 personal and 2 private; -1, and nothing changed, for any other. It clears
  // what `SetChanged` sets, which is therefore called later; the organiser has it so.
  std::int32_t SetSensitivity(std::int32_t value);
  void SetChanged(bool changed);

  // Each takes any value but 0: -1, and nothing changed, for that, else 0. A `created` in a list of
  // items is set through the list.
  std::int32_t SetStart(std::int32_t seconds);
  std::int32_t SetEnd(std::int32_t seconds);
  std::int32_t SetModified(std::int32_t seconds);
  std::int32_t SetCreated(std::int32_t created);

  // Hour and minute that the clocks of the working city show then. The dates stay.
  void SetStartTime(std::int32_t seconds);
  void SetEndTime(std::int32_t seconds);

  WMEventHeader header;
  WMEventDetail detail;
};
