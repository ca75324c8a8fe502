#pragma once

#include <grp.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <vector>

namespace pw {

inline bool MayBecomeOthers() {
  return geteuid() == 0;
}

// Does something in a child process, as another user with further groups, and returns what that
// gave. A child that can't do so, or dies, gives -1.
template <class Work>
int AsUser(uid_t user, const std::vector<gid_t>& groups, Work work) {
  constexpr int kNoOtherUser = 99;
  const pid_t child = fork();
  if (child == 0) {
    umask(022);
    const bool other =
        setgroups(groups.size(), groups.data()) == 0 && setgid(user) == 0 && setuid(user) == 0;
    _exit(other ? static_cast<int>(work()) : kNoOtherUser);
  }
  int status = 0;
  const bool ended = waitpid(child, &status, 0) == child && WIFEXITED(status);
  return ended && WEXITSTATUS(status) != kNoOtherUser ? WEXITSTATUS(status) : -1;
}

}  // namespace pw
