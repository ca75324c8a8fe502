#pragma once

#include "calendar/item_list.h"
#include "calendar/recurring_file.h"

// Which occurrence of the event file belongs to which series of the recurring file, found out once
// after both were read.

// Of version 50: an occurrence that was changed has the key of its series as `created`. Each
// exception of that series which names the occurrence gets it as its instance. All others are left
// alone.
void LinkInstancesToExceptions(ItemList& occurrences, WMRecurringFile& series);

// Of older files, which name no links: series are told by what their occurrences look like, and get
// keys; the dates that a rule gives and that have no occurrence become deleted ones, with an
// exception each. What fits no series is left as it is. Makes the `created` of each occurrence that
// fits the key of its series.
//
// Takes time in proportion to occurrences and series, unless many series look alike.
void LinkOlderFile(ItemList& occurrences, WMRecurringFile& series);
