#include "host/signal_cleanup.h"

#include <csignal>
#include <mutex>
#include <set>
#include <system_error>
#include <thread>

namespace pw {
namespace {

struct Watched {
  std::mutex mutex;
  std::set<std::filesystem::path> folders;
};

// Never destroyed: the watching thread outlives `main`.
Watched& TheWatched() {
  static auto* watched = new Watched;
  return *watched;
}

// Without those that are ignored, as SIGHUP is by what is to outlive its terminal.
sigset_t EndingSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action {};
    const bool ignored = ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
    if (!ignored) sigaddset(&signals, signal);
  }
  return signals;
}

// Whoever is still filling a folder may put a file there meanwhile, so it takes a few rounds.
void RemoveFolder(const std::filesystem::path& folder) {
  constexpr int kRounds = 20;
  for (int round = 0; round < kRounds; ++round) {
    std::error_code error;
    std::filesystem::remove_all(folder, error);
    if (!error && !std::filesystem::exists(folder, error)) return;
  }
}

[[noreturn]] void EndAs(int signal) {
  std::signal(signal, SIG_DFL);
  const sigset_t signals = EndingSignals();
  pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
  std::raise(signal);
  std::_Exit(128 + signal);
}

void Watch() {
  const sigset_t signals = EndingSignals();
  int signal = 0;
  while (sigwait(&signals, &signal) != 0) {
  }
  Watched& watched = TheWatched();
  // Kept locked to the end, so that nothing new is registered.
  const std::lock_guard lock(watched.mutex);
  for (const auto& folder : watched.folders) RemoveFolder(folder);
  EndAs(signal);
}

}  // namespace

void WatchForSignals() {
  static std::once_flag once;
  std::call_once(once, [] {
    const sigset_t signals = EndingSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::thread(Watch).detach();
  });
}

void RemoveOnSignal(const std::filesystem::path& folder) {
  Watched& watched = TheWatched();
  const std::lock_guard lock(watched.mutex);
  watched.folders.insert(folder);
}

void ForgetOnSignal(const std::filesystem::path& folder) {
  Watched& watched = TheWatched();
  const std::lock_guard lock(watched.mutex);
  watched.folders.erase(folder);
}

}  // namespace pw
