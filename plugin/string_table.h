#pragma once

#include <cstdint>
#include <string>

#include "framework/string.h"

// The module's texts: messages, product names, registry keys and a few file names, by number.

// Numbers of the texts, by what they say.
namespace strings {

inline constexpr std::uint32_t kNameWingmate98 = 100;
inline constexpr std::uint32_t kNameInformationManager = 101;
inline constexpr std::uint32_t kNameDesktop = 102;
inline constexpr std::uint32_t kNameWingmate99 = 8110;

inline constexpr std::uint32_t kTitleWingmate98 = 110;
inline constexpr std::uint32_t kTitleInformationManager = 111;
inline constexpr std::uint32_t kTitleDesktop = 112;
inline constexpr std::uint32_t kTitleWingmate99 = 8110;
inline constexpr std::uint32_t kOptionsWingmate98 = 120;
inline constexpr std::uint32_t kOptionsInformationManager = 121;
inline constexpr std::uint32_t kOptionsDesktop = 122;
inline constexpr std::uint32_t kOptionsWingmate99 = 8111;
inline constexpr std::uint32_t kNewCardfile = 140;

inline constexpr std::uint32_t kChooseFolder = 2000;
inline constexpr std::uint32_t kSetup = 2001;
inline constexpr std::uint32_t kOneFolderForSetup = 2002;
inline constexpr std::uint32_t kOneFolder = 2100;
inline constexpr std::uint32_t kFolderOf = 2101;
inline constexpr std::uint32_t kDataOf = 2102;
inline constexpr std::uint32_t kPlaceListFile = 2104;
inline constexpr std::uint32_t kData = 2106;
inline constexpr std::uint32_t kFile = 2107;
inline constexpr std::uint32_t kCannotFindFile = 2109;
inline constexpr std::uint32_t kWarning = 2111;
inline constexpr std::uint32_t kWhichIsRequired = 2112;
inline constexpr std::uint32_t kEventMovedUp = 2114;
inline constexpr std::uint32_t kEventTooEarly = 2115;
inline constexpr std::uint32_t kEventMovedBack = 2117;
inline constexpr std::uint32_t kEventTooLate = 2118;
inline constexpr std::uint32_t kEventFile = 2119;
inline constexpr std::uint32_t kDataFile = 2120;
inline constexpr std::uint32_t kRecurringFile = 2121;
inline constexpr std::uint32_t kAllDayRecurring = 2122;
inline constexpr std::uint32_t kEventNotesShortened = 2123;
inline constexpr std::uint32_t kRecurringTask = 2127;
inline constexpr std::uint32_t kRecurringCall = 2128;
inline constexpr std::uint32_t kOrganiserCannotConnect = 2129;
inline constexpr std::uint32_t kOrganiserBusy = 2130;
inline constexpr std::uint32_t kDefaultTemplate = 2133;

inline constexpr std::uint32_t kMainKeyInformationManager = 3000;
inline constexpr std::uint32_t kMainKeyWingmate98 = 3001;
inline constexpr std::uint32_t kMainKeyDesktop = 3002;
inline constexpr std::uint32_t kVersionKey = 3003;
inline constexpr std::uint32_t kCalendarTaskKey = 3012;
inline constexpr std::uint32_t kDefaultUserName = 3013;

inline constexpr std::uint32_t kSureToDelete = 8100;
inline constexpr std::uint32_t kChangedOccurrence = 8103;
inline constexpr std::uint32_t kFirstName = 8104;
inline constexpr std::uint32_t kLastName = 8105;
inline constexpr std::uint32_t kCompany = 8106;
inline constexpr std::uint32_t kMonthlyByDayManifold = 8107;
inline constexpr std::uint32_t kTimezonesReadOnly = 8108;
inline constexpr std::uint32_t kVersion = 8109;
inline constexpr std::uint32_t kSeriesTruncated = 8112;
inline constexpr std::uint32_t kCallNoteShortened = 8115;
inline constexpr std::uint32_t kTaskNoteShortened = 8116;
inline constexpr std::uint32_t kCallDayFull = 8117;
inline constexpr std::uint32_t kTaskDayFull = 8118;
inline constexpr std::uint32_t kThreeOverlap = 8120;
inline constexpr std::uint32_t kContactLog = 8121;
inline constexpr std::uint32_t kDefaultFont = 8122;
inline constexpr std::uint32_t kCalendarCategory = 8123;
inline constexpr std::uint32_t kTaskCategory = 8124;
inline constexpr std::uint32_t kStemEmpty = 8125;
inline constexpr std::uint32_t kRegion = 8126;
inline constexpr std::uint32_t kCountry = 8127;
inline constexpr std::uint32_t kRemapCategories = 8128;
inline constexpr std::uint32_t kYearlyWithEnd = 8129;
inline constexpr std::uint32_t kAlarmTooEarly = 8130;
inline constexpr std::uint32_t kStoredUntimed = 8131;

}  // namespace strings

// What stands for the module wherever its texts are loaded. Made at load; never null.
const PWModuleRecord* ModuleInstance();

// The text of that number; empty for a number that the table doesn't have.
PWString LoadString(std::uint32_t number);

// The same for a text with one "%s", which stands for the value; null is the empty text.
std::string FormatString(std::uint32_t number, const char* value);
