#include "plugin/string_table.h"

#include <array>

#include "base/text.h"

namespace {

// In the order of the numbers, which the lookup relies on. 100 to 140 are names and titles by
// product, 2000 to 2133 and 8100 to 8131 messages and names, 3000 to 3013 registry keys.
constexpr std::array<PWModuleString, 85> kStrings = {{
    {100, "Wingmate 98"},
    {101, "PairWise Information Manager"},
    {102, "PairWise Desktop"},
    {110, "Wingmate 98"},
    {111, "PairWise Information Manager"},
    {112, "PairWise Desktop"},
    {120, "Wingmate 98 Options"},
    {121, "PairWise Information Manager Options"},
    {122, "PairWise Desktop Options"},
    {130, "Browse for Wingmate 98 User Data"},
    {131, "Browse for PairWise Information Manager User Data"},
    {132, "Browse for PairWise Desktop User Data"},
    {140, "New cardfile: %1"},
    {2000, "Please choose the folder where your %s files are located."},
    {2001, "%s Setup"},
    {2002,
     "PairWise supports only one folder for %s files.  If you have your files in multiple folders, "
     "you may want to merge them into one folder before continuing with Setup."},
    {2100,
     "PairWise supports only one folder for %s files.  If you have your files in multiple folders, "
     "you may want to merge them into one folder before continuing."},
    {2101, "&%s folder:"},
    {2102, "%s data"},
    {2103, "WMW400"},
    {2104, "Place List.dat"},
    {2106, "Data"},
    {2107, "file"},
    {2108, "Synchronize"},
    {2109, "Cannot find the file "},
    {2110, "Required File"},
    {2111, "Warning"},
    {2112, ", \nwhich is required for running Wingmate/PairWise Desktop."},
    {2113, " All countries"},
    {2114,
     "PWDesktop-W2002: The event '%s' occurs earlier than 1980, and will be moved up to 1980."},
    {2115, "PWDesktop-W2003: The event '%s' occurs earlier than 1980, and is not supported."},
    {2117,
     "PWDesktop-W2004: The event '%s' occurs later than 2029, and will be moved back to 2029."},
    {2118, "PWDesktop-W2005: The event '%s' occurs later than 2029, and is not supported."},
    {2119, "Even.WMW"},
    {2120, "Data.WMW"},
    {2121, "Recr.WMW"},
    {2122, "PWDesktop-W2001: The event '%s' is an all day recurring event and is not supported."},
    {2123,
     "PWDesktop-W2006: The notes for the event '%s' were shortened and will not appear in their "
     "entirety in %s."},
    {2124, "LocalCity"},
    {2125, "Local Time City Changed"},
    {2127, "PWDesktop-W2010: Recurring To Do item '%s' is not supported by PairWise."},
    {2128, "PWDesktop-W2011: Recurring Call item '%s' is not supported by PairWise."},
    {2129,
     "PairWise cannot connect to %s because it is busy.\n\nPlease close any open dialogs and try "
     "this operation again."},
    {2130,
     "PWDesktop-E0001: All dialogs in %s must be closed before PairWise can synchronize its data."},
    {2131, "PWDesktop-E0002: The %s folder '%s' no longer exists."},
    {2132,
     "The %s folder '%s' no longer exists.\n\nPlease verify the user data folder in the Options "
     "dialog and try synchronizing again."},
    {2133, "[%s default]"},
    {3000, "SOFTWARE\\Gullwing\\ORB PairWise Information Manager\\Version 1\\Main"},
    {3001, "SOFTWARE\\Gullwing\\Wingmate 98\\Version 1\\Main"},
    {3002, "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main"},
    {3003, "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main"},
    {3010, "SOFTWARE\\Gullwing\\ORB PairWise Information Manager\\Version 1\\GlobeHour"},
    {3011, "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\GlobeHour"},
    {3012, "Calendar-Task"},
    {3013, "DefUserName"},
    {8100, "Are you sure you want to delete all your %s data, then overwrite it?"},
    {8101,
     "PWDesktop-W2007: The event '%s' has a recurring pattern which has every occurrence deleted, "
     "and will not be synchronized."},
    {8102, "PWDesktop-W2008: The event '%s' is a group appointment, and is not supported."},
    {8103,
     "PWDesktop-W2009: The event '%s' has a recurring pattern which contains a changed occurrence "
     "which is not supported."},
    {8104, "First Name"},
    {8105, "Last Name"},
    {8106, "Company"},
    {8107,
     "PWDesktop-W2401: The monthly by day recurring '%s' contains more than one instance and is "
     "ignored by PairWise."},
    {8108, "PWDesktop-W0003: Timezone information cannot be modified in %s while it is running."},
    {8109, "Version"},
    {8110, "Wingmate 99"},
    {8111, "Wingmate 99 Options"},
    {8112,
     "PWDesktop-W2012: The date range for the recurring event \"%s\" is too long and has been "
     "truncated by Wingmate/PairWise Desktop."},
    {8115,
     "The notes for the call '%s' were shortened and will not appear in their entirety in %s."},
    {8116,
     "The notes for the todo '%s' were shortened and will not appear in their entirety in %s."},
    {8117,
     "Wingmate/PairWise Desktop can not hold more than 96 calls within one day and the call '%s' "
     "was dropped."},
    {8118,
     "Wingmate/PairWise Desktop can not hold more than 96 todos within one day and the todo '%s' "
     "was dropped."},
    {8119, "PairWise Version '%s'"},
    {8120,
     "PWDesktop-W2013: Three events overlap with the event '%s', and it cannot be added into "
     "Wingmate/PairWise Desktop."},
    {8121, "Contact Log"},
    {8122, "Arial"},
    {8123, "Calendar"},
    {8124, "Task"},
    {8125,
     "The calendar/task name can not be left empty. Please either type a file name or select one "
     "from the drop down list."},
    {8126, "USA"},
    {8127, "USA"},
    {8128,
     "You will need to re-map your categories in the Data Contacts,\nCalendar, To Do List, and "
     "Memos dialogs.\n\n"},
    {8129,
     "PWDesktop-W2014: The event '%s' is a yearly all day recurring event with the ending date and "
     "is not supported."},
    {8130,
     "PWDesktop-W2015: The event '%s' has an alarm '%d' minutes is not supported on the PWDesktop "
     "and the alarm is set to '%d' minutes."},
    {8131,
     "PWDesktop-W2016: The event '%s' spans to multiple days on PWDesktop and the event is stored "
     "as untimed event. Start date '%s'."},
}};

const PWModuleRecord moduleRecord = {kStrings.data(), kStrings.size()};

}  // namespace

const PWModuleRecord* ModuleInstance() {
  return &moduleRecord;
}

PWString LoadString(std::uint32_t number) {
  PWString text;
  text.Load(ModuleInstance(), number);
  return text;
}

std::string FormatString(std::uint32_t number, const char* value) {
  const PWString text = LoadString(number);
  if (text.IsEmpty()) return {};
  return pw::Format(text, value == nullptr ? "" : value);
}
