#pragma once

#include <functional>
#include <memory>
#include <optional>

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

// The same with the organiser's files locked too, also against runs of other profiles.
int WithLockedData(const CommandLine& line, const std::function<int(const Profile&)>& work);

// Starts a run over the profile that only reads, does the work, and shows what was logged.
int WithReadingRun(const CommandLine& line, const std::function<int(EngineRun&)>& work);

// What a person must agree to before anything is done. It gets a run that only reads, which is over
// before the other one starts. Gives the exit code if the command is to end there.
using AskFirst = std::function<std::optional<int>(EngineRun&)>;

// The same in place. A backup is made before, which is told, and nothing is made or marked before
// `ask`, where there is one, agrees. No such run starts, nor is anything asked, where one before it
// was cut off and nobody says what is to become of its files, or where the organiser waits in a
// dialog (organiser_guard.h). Nor does it start where a calendar is in the way (calendar_guard.h),
// some of them overcome by `force`.
int WithWritingRun(const CommandLine& line, bool force, const std::function<int(EngineRun&)>& work,
                   const AskFirst& ask = {});

// The same for somebody who plays the engine, and has a dialog of the organiser's looked for or
// not.
int WithDrivenRun(const CommandLine& line, bool force, const std::function<int(EngineRun&)>& work);

}  // namespace pw
