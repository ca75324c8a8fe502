#include "platform/posix/sharing_lock.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <limits>

#include "platform/posix/descriptor.h"

namespace pw {
namespace {

enum class Mark : std::int8_t { kIsRead, kIsWritten, kNoReading, kNoWriting };

constexpr off_t kFirstMark = std::numeric_limits<off_t>::max() - 16;

struct flock LockOf(Mark mark, short type) {
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = kFirstMark + static_cast<off_t>(mark);
  lock.l_len = 1;
  return lock;
}

void Take(int descriptor, Mark mark) {
  struct flock lock = LockOf(mark, F_RDLCK);
  // A shared lock is never in another's way, as no mark is ever of the other kind. If it can't be
  // had the file system has none, or a program that isn't this one has locked the whole file.
  Uninterrupted([&] { return fcntl(descriptor, F_OFD_SETLK, &lock); });
}

// A lock that starts farther in front isn't one of the marks, though it reaches over them: some
// program has locked the whole file for a purpose of its own.
bool IsTakenElsewhere(int descriptor, Mark mark) {
  struct flock lock = LockOf(mark, F_WRLCK);
  const int asked = Uninterrupted([&] { return fcntl(descriptor, F_OFD_GETLK, &lock); });
  return asked == 0 && lock.l_type != F_UNLCK && lock.l_start >= kFirstMark;
}

}  // namespace

bool TakeSharing(int descriptor, bool writes, Sharing sharing) {
  const bool mayRead = sharing == Sharing::kRead || sharing == Sharing::kReadWrite;
  const bool mayWrite = sharing == Sharing::kWrite || sharing == Sharing::kReadWrite;
  Take(descriptor, Mark::kIsRead);
  if (writes) Take(descriptor, Mark::kIsWritten);
  if (!mayRead) Take(descriptor, Mark::kNoReading);
  if (!mayWrite) Take(descriptor, Mark::kNoWriting);

  const auto taken = [&](Mark mark) { return IsTakenElsewhere(descriptor, mark); };
  const bool contradicted = taken(Mark::kNoReading) || (writes && taken(Mark::kNoWriting)) ||
                            (!mayRead && taken(Mark::kIsRead)) ||
                            (!mayWrite && taken(Mark::kIsWritten));
  return !contradicted;
}

bool IsOpenElsewhere(int descriptor) {
  return IsTakenElsewhere(descriptor, Mark::kIsRead);  // which every open file is
}

}  // namespace pw
