#pragma once

#include <cstdint>

#include "framework/values.h"
#include "timeplace/city_format.h"
#include "timeplace/date.h"

// The organiser's clock: seconds since 1970 UTC, and what the clocks of the working city show.
//
// Every local date is that of the organiser's home city, not of the machine. The working city is
// the home city but while a series of another zone is handled. Both are state of the process, as is
// the one year whose daylight bounds hold. It starts without a zone, and loads the home city on the
// first conversion; where that fails, conversions go on with UTC, and don't try again until a
// source opens. A home city that is loaded stays as it was then until `LoadHomeZone`, and its zone
// for as long as the number is the same. All are called on the engine's one thread.

// Loads the home city and the number of zones from the organiser's folder, as its registry keys
// name them. False if there is no city file. A home city that the file doesn't know leaves all as
// it was.
bool LoadHomeZone();

// A source opens: the city file may have changed meanwhile, and is looked at again when a zone is
// next looked up; a home city that could not be loaded is tried again.
void ZoneFilesMayHaveChanged();

// The zone number of the working and of the home city, 0 to 255; 0 where none is loaded.
std::int32_t WorkingZoneId();
std::int32_t HomeZoneId();

// Makes the first city of that zone number the working city, or for 0 the home city; with
// `makeHome` the home city too. True if that changed the zone, or the number is that of the working
// city already; false if the home city has the working city's number, or no city has this one.
// Touches no file once the city file has been read. The home city must have been loaded: there is
// no way back to one that was not.
bool SwitchZone(std::int32_t id, bool makeHome);

// Makes the bounds those of a year, which is in full.
void ComputeDaylightBounds(std::int32_t year);

// Seconds of a local time, which is brought into its ranges; `isdst` is set. A time in the hour
// that is skipped is moved forward, one in the hour that occurs twice is daylight time.
std::int32_t LocalToSeconds(WMBrokenTime& local);
WMBrokenTime SecondsToLocal(std::int32_t seconds);

// The same without a zone.
WMBrokenTime SecondsToPlain(std::int32_t seconds);
PWDateTimeStamp SecondsToStamp(std::int32_t seconds);

std::int32_t LocalStampToSeconds(const PWDateTimeStamp& stamp);
PWDateTimeStamp SecondsToLocalStamp(std::int32_t seconds);

// The present time.
void LocalNow(SYSTEMTIME& now);
std::int32_t UtcNowSeconds();

// The zone of the working city, despite the name, in the engine's form. False, and nothing done, if
// no zone is loaded.
bool HomeToTimeZone(TIME_ZONE_INFORMATION& zone);

// The zone of a city in the engine's form. West of Greenwich an offset with minutes, and anywhere
// one of less than an hour, gives a bias that is not right; the engine's data has it so. Always
// true.
bool CityToTimeZone(const WMCityRecord& city, TIME_ZONE_INFORMATION& zone);

// The organiser's number for a zone of the engine's: the working zone's if that is the same, else
// the last one that is, but for one of a city in the USA, which ends the search. Without a match
// false, and `id` is the working zone's.
bool ZoneIdOfTimeZone(PWTimeZone& zone, std::int32_t& id);
