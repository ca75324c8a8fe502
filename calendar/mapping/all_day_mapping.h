#pragma once

#include <cstdint>

class PWEventRecord;
class WMDataFile;

// Events without a time of day, as the data file keeps them: those over several days, and special
// days. Dates are those of the working zone's clocks.
//
//   engine                        special day
//   an all-day event of one date  that date, in its year
//   yearly by date, without end   month and day of every year
//   yearly by day, without end    week and weekday of a month of every year
//
// A special day that comes every year is read as one that began in 1980. Leads of an alarm are kept
// in whole days; one of less than twelve hours leaves the alarm as it was.

// Appends an event over several days, or an event in the shape of a special day. 0, or 1 and
// nothing done for any other.
std::int32_t AddMultiDayOrSpecial(WMDataFile& data, PWEventRecord& event);

// Appends a yearly all-day event without end. False, and nothing done, for any other.
bool AddSpecialFromRecurring(WMDataFile& data, PWEventRecord& event);

// Changes the record of that index. False, and nothing done, if the event has no longer the shape
// of its kind, or there is no such record.
bool UpdateMultiDayOrSpecial(WMDataFile& data, std::uint32_t index, PWEventRecord& event);

// Fills the event from the record of that index. 0, or 1 if there is no such record or a special
// day's year or month is none.
std::int32_t ReadMultiDayOrSpecial(const WMDataFile& data, std::uint32_t index,
                                   PWEventRecord& event);
