#pragma once

#include <memory>

#include "calendar/event_item.h"
#include "calendar/recurring_item.h"

class PWEventRecord;
class PWRecurranceException;

// The fields of timed events: those of the engine's records in the items of the event file, and
// back. Times of day are those of the working zone's clocks; moments aren't shifted.
//
//   engine                     item
//   Subject                    subject, with a blank for each 0x09 and 0x7F
//   StartDate, EndDate         start and end, but for a moment of 0, which leaves them; hour and
//                              minute of the time word
//   Notes                      notes, of which the first 2048 bytes are kept (`NotesShortened`)
//   Location                   the place's first text
//   Alarm                      the alarm bit
//   AlarmAdvance               lead hours and minutes, written with an alarm only
//   Sensitivity                0, 1 and 2; 3 becomes 2, and any other 0
//
// A change is stamped with the present time, in the home zone whatever zone works.

void FillItemFromEvent(const PWEventRecord& event, WMEventItem& item);
void FillEventFromItem(const WMEventItem& item, PWEventRecord& event);

// An occurrence of a series: its detail, on a date by the working zone's clocks.
std::unique_ptr<WMEventItem> MakeOccurrenceItem(const WMEventDetail& detail, std::int32_t date);

// An occurrence that is otherwise than its series: the exception's times, and its texts and alarm
// where it says so; the event's texts where it doesn't.
std::unique_ptr<WMEventItem> MakeChangedOccurrenceItem(const PWEventRecord& event,
                                                       const PWRecurranceException& exception);

// All of a changed occurrence is told as changed, whether it is or not.
void FillExceptionFromItem(const WMEventItem& instance, PWRecurranceException& exception);

// Alarms and their leads in an item's or a series' detail. The minutes are cut to what the fields
// hold.
void SetAlarm(WMEventDetail& detail, bool alarm, std::int32_t minutes);
std::int32_t AlarmMinutes(const WMEventDetail& detail);
