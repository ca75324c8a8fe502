#pragma once

#include "framework/values.h"

class PWEventRecord;
class PWRecurranceException;

// The shape of an event decides which of the organiser's lists it goes to: a timed item of one day,
// one that takes several days, or a special day. Days are those of the working zone's clocks
// (timeplace/zones.h).

// Brings a stamp into what the organiser's calendar holds: the years 1980 to 2029, and each smaller
// field into its range, but for an hour of 24 and a minute of 60, which stay. Seconds are left
// alone.
void ClampStamp(PWDateTimeStamp& stamp);
void ClampStampRange(PWDateTimeStamp& start, PWDateTimeStamp& end);

// A timed event within one day, neither all day nor recurring.
bool IsPlainDay(PWEventRecord& event);

// An all-day event that starts and ends on one date, or a timed one within a day. A timed event
// without length is neither this nor of several days.
bool IsSingleDay(PWEventRecord& event);
bool IsMultiDay(PWEventRecord& event);

// An all-day event of one date, or one that recurs without an end.
bool IsSpecialDayShape(PWEventRecord& event);

// Whether the changed occurrence of a series reaches beyond a day.
bool ChangedOccurrenceIsMultiDay(PWRecurranceException& exception);
