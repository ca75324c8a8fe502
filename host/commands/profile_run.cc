#include "host/commands/profile_run.h"

namespace pw {

int WithRun(const CommandLine& line, RunMode mode, const std::function<int(EngineRun&)>& work) {
  const Console& console = line.console;
  if (line.profileFolder.empty()) {
    return console.FailUsage(
        "which profile? Give it as --profile DIR, or set PAIRWISE_PROFILE (`pairwise init` makes "
        "one)");
  }
  const auto profile = ReadProfile(line.profileFolder);
  if (!profile) return console.Fail(profile.Why());
  const auto run = EngineRun::Start(*profile, mode, console.messages);
  if (!run) return console.Fail(run.Why());
  const int code = work(**run);
  (*run)->ShowLog();
  if (const auto lost = (*run)->RegistryFailure()) return console.Fail(*lost);
  return code;
}

}  // namespace pw
