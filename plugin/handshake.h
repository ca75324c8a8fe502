#pragma once

#include <cstdint>
#include <string>

#include "framework/source_manager.h"

// The word with a running organiser about its files. It is asked by window message to let go of
// them before a source opens them, and told when it may have them back; which files are meant
// stands in the registry. Where no organiser runs all of this does nothing. Each call waits for the
// organiser's answer without a time-out.

// Which files are meant.
enum OrganiserFiles : std::int32_t {
  kTodoFiles = 0,
  kCalendarFiles = 1,
  kContactFiles = 2,
  kTimezoneFiles = 3,
  kMemoFiles = 4,
};

// What the organiser said to an open. A source goes on with either of the latter two.
enum OrganiserReply : std::int32_t {
  kOrganiserBusy = 0,   // it has a dialog open
  kOrganiserOther = 1,  // it isn't there, wasn't asked, or doesn't agree
  kOrganiserAgrees = 2,
};

// Whether an organiser runs at all.
bool IsOrganiserRunning();

// A source wants the files of `kind` at `path`; the notes about them are written, then the
// organiser is asked. `message` is the number of the registered message, or 0 to have it looked up.
// With `skip` nothing is done, and the reply is 1.
std::int32_t NotifyOrganiserOpen(const char* path, std::uint32_t message, std::int32_t kind,
                                 bool skip);

// Tells the person that the organiser has a dialog open, in the manager's log if there is one.
void LogOrganiserBusy(PWSourceManager& manager);

// The source opens the files now. Whether the organiser replied 0; true where nothing was sent.
bool NotifyOrganiserLock(std::uint32_t message, bool skip);

// Asks by these two for the files of `kind` at `path`. False where the organiser is busy; then
// nothing was opened.
bool AskOrganiser(const std::string& path, OrganiserFiles kind, bool skip = false);

// The same for a source of that manager; that the organiser is busy is told as above.
bool AskOrganiser(PWSourceManager& manager, const std::string& path, OrganiserFiles kind,
                  bool skip = false);

// The source is done: `changed` if the files are to be taken back, false if they were not touched.
// Whether the organiser replied 0; true where nothing was sent.
bool NotifyOrganiserEnd(bool changed, std::uint32_t message, bool skip);
