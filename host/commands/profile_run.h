#pragma once

#include <functional>
#include <memory>

#include "host/commands/commands.h"
#include "host/engine_run.h"
#include "host/profile_lock.h"

// What most commands do their work in. Each gives the exit code, which is the work's own where it
// came to that.
namespace pw {

// Reads the profile that the command line names.
int WithProfile(const CommandLine& line, const std::function<int(const Profile&)>& work);

// The same with the profile locked, so that no run changes the files meanwhile.
int WithLockedProfile(const CommandLine& line,
                      const std::function<int(const Profile&, ProfileLock)>& work);

// Starts a run over the profile that only reads, does the work, and shows what was logged.
int WithReadingRun(const CommandLine& line, const std::function<int(EngineRun&)>& work);

// The same in place. A backup is made before, which is told. No such run starts where one before it
// was cut off and nobody says what is to become of its files, or where a calendar is in the way
// (calendar_guard.h), some of them overcome by `force`.
int WithWritingRun(const CommandLine& line, bool force, const std::function<int(EngineRun&)>& work);

}  // namespace pw
