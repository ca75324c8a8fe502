#pragma once

#include <filesystem>

namespace pw {

// From here on a signal that asks the process to end (SIGINT, SIGTERM, SIGHUP) first removes the
// registered folders, then ends it as that signal does; one that is ignored stays so. The first
// call must come before any thread is started, later ones change nothing.
void WatchForSignals();

// Registers a folder to be removed with all in it, and takes it back. Both may be called before
// `WatchForSignals`.
void RemoveOnSignal(const std::filesystem::path& folder);
void ForgetOnSignal(const std::filesystem::path& folder);

}  // namespace pw
