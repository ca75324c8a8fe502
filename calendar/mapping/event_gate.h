#pragma once

class PWLog;
class PWRecord;

// Whether the organiser can hold an event, by rules in a fixed order. What it can't hold, and what
// is lost on the way, is told in the log, which may be null. An alarm of a day or more before the
// event is set to a minute less than a day in the record itself.
//
// The organiser has it so that an event which was refused for taking several days passes after all
// where only a part of its series is out of the calendar's years.
bool CheckEventStorable(PWRecord& record, PWLog* log);
